// Collects bytes from words that begin at any byte and packs them into words that begin where the target begins. The
// first and the last word of a run can be partial; strobes say which bytes count.
module dma_aligner (
    input  wire        clk,
    input  wire        rst,

    input  wire        start,
    input  wire [1:0]  target,          // first byte of the target
    input  wire [12:0] bytes,
    output wire        busy,

    input  wire        in_valid,
    output wire        in_ready,
    input  wire [31:0] in_data,
    input  wire [1:0]  in_first,
    input  wire [2:0]  in_size,

    output wire        out_valid,
    input  wire        out_ready,
    output wire [31:0] out_data,
    output wire [3:0]  out_strobe
);

    // Up to seven bytes wait: three that did not fill a word, and four that came
    reg [55:0] hold;
    reg [2:0]  held;                    // bytes in the hold, from the low end
    reg [1:0]  lane;                    // of the first byte of the next word
    reg [12:0] to_send;

    // The bytes that count, at the low end
    reg [31:0] shifted;
    always @*
        case (in_first)
            2'd0: shifted = in_data;
            2'd1: shifted = {8'd0, in_data[31:8]};
            2'd2: shifted = {16'd0, in_data[31:16]};
            2'd3: shifted = {24'd0, in_data[31:24]};
        endcase

    function [31:0] keep;
        input [31:0] data;
        input [2:0]  size;
        integer      b;
        begin
            for (b = 0; b < 4; b = b + 1)
                keep[8*b +: 8] = b < size ? data[8*b +: 8] : 8'd0;
        end
    endfunction

    // A word is complete when it is full, or when it is the last one
    wire [2:0] room    = 3'd4 - {1'b0, lane};
    wire [2:0] wanted  = to_send < {10'd0, room} ? to_send[2:0] : room;
    wire       filled  = held >= wanted && to_send != 0;

    assign out_valid = filled;
    assign out_data  = hold[31:0] << {lane, 3'b000};

    genvar g;
    generate
        for (g = 0; g < 4; g = g + 1) begin : strobe
            assign out_strobe[g] = (g >= lane) && ({1'b0, g[1:0]} < {1'b0, lane} + wanted);
        end
    endgenerate

    wire       sent       = out_valid & out_ready;
    wire [2:0] after_sent = sent ? held - wanted : held;

    assign in_ready = after_sent <= 3'd3;

    wire taken = in_valid & in_ready;

    reg [55:0] hold_next;
    always @* begin
        hold_next = sent ? hold >> {wanted, 3'b000} : hold;
        if (taken) hold_next = hold_next | ({24'd0, keep(shifted, in_size)} << {after_sent, 3'b000});
    end

    always @(posedge clk or posedge rst)
        if (rst) begin
            hold    <= 56'd0;
            held    <= 3'd0;
            lane    <= 2'd0;
            to_send <= 13'd0;
        end else if (start) begin
            hold    <= 56'd0;
            held    <= 3'd0;
            lane    <= target;
            to_send <= bytes;
        end else begin
            hold <= hold_next;
            held <= after_sent + (taken ? in_size : 3'd0);
            if (sent) begin
                lane    <= 2'd0;
                to_send <= to_send - {10'd0, wanted};
            end
        end

    assign busy = to_send != 0;

endmodule
