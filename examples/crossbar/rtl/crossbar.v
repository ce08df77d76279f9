// Crossbar switch: INPUTS streams to OUTPUTS streams, each word carries its destination. Round-robin arbitration per
// output, a register slice at each output, and a count of the words that went to nowhere.
module crossbar #(
    parameter INPUTS  = 4,
    parameter OUTPUTS = 3,
    parameter WIDTH   = 8,
    parameter DEST    = 2,
    parameter BYPASS_MASK = 3'b010
) (
    input  wire                       clk,
    input  wire                       rst_n,

    input  wire [INPUTS-1:0]          in_valid,
    output wire [INPUTS-1:0]          in_ready,
    input  wire [INPUTS*DEST-1:0]     in_dest,
    input  wire [INPUTS*WIDTH-1:0]    in_data,

    output wire [OUTPUTS-1:0]         out_valid,
    input  wire [OUTPUTS-1:0]         out_ready,
    output wire [OUTPUTS*WIDTH-1:0]   out_data,

    output reg  [15:0]                dropped
);

    // taken[o*INPUTS + i]: output o takes the word of input i in this cycle
    wire [OUTPUTS*INPUTS-1:0] taken;
    wire [INPUTS-1:0]         lost;

    genvar i, o;
    generate
        for (o = 0; o < OUTPUTS; o = o + 1) begin : column
            wire [INPUTS-1:0] request;
            wire [INPUTS-1:0] grant;
            wire [WIDTH-1:0]  word;
            wire              room;

            for (i = 0; i < INPUTS; i = i + 1) begin : row
                assign request[i] = in_valid[i] && (in_dest[i*DEST +: DEST] == o);
            end

            rr_arbiter #(.N(INPUTS)) arbiter (
                .clk     (clk),
                .rst_n   (rst_n),
                .request (request),
                .advance (room),
                .grant   (grant)
            );

            onehot_mux #(.N(INPUTS), .WIDTH(WIDTH)) mux (
                .select (grant),
                .words  (in_data),
                .y      (word)
            );

            skid_buffer #(
                .WIDTH  (WIDTH),
                .BYPASS ((BYPASS_MASK >> o) & 1)
            ) slice (
                .clk       (clk),
                .rst_n     (rst_n),
                .in_valid  (|grant),
                .in_ready  (room),
                .in_data   (word),
                .out_valid (out_valid[o]),
                .out_ready (out_ready[o]),
                .out_data  (out_data[o*WIDTH +: WIDTH])
            );

            assign taken[o*INPUTS +: INPUTS] = grant & {INPUTS{room}};
        end

        for (i = 0; i < INPUTS; i = i + 1) begin : source
            wire [OUTPUTS-1:0] mine;
            for (o = 0; o < OUTPUTS; o = o + 1) begin : pick
                assign mine[o] = taken[o*INPUTS + i];
            end
            assign lost[i]     = in_valid[i] && (in_dest[i*DEST +: DEST] >= OUTPUTS);
            assign in_ready[i] = (|mine) | lost[i];
        end
    endgenerate

    function integer count_ones;
        input [INPUTS-1:0] v;
        integer k;
        begin
            count_ones = 0;
            for (k = 0; k < INPUTS; k = k + 1)
                count_ones = count_ones + v[k];
        end
    endfunction

    always @(posedge clk or negedge rst_n)
        if (!rst_n) dropped <= 0;
        else        dropped <= dropped + count_ones(lost);

endmodule
