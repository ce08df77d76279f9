// Counters of frames and bytes. All are saturating; a read clears the one that was read, and an event in the same cycle
// is not lost.
module mac_counters #(
    parameter WIDTH = 24
) (
    input  wire         clk,
    input  wire         rst,
    input  wire [9:0]   events,
    input  wire         byte_received,
    input  wire         byte_sent,
    input  wire         read,
    input  wire [3:0]   index,
    output reg  [31:0]  value
);

    localparam COUNTERS = 12;

    wire [COUNTERS-1:0] bump = {byte_sent, byte_received, events};
    wire [WIDTH*COUNTERS-1:0] values;

    genvar i;
    generate
        for (i = 0; i < COUNTERS; i = i + 1) begin : counter
            reg  [WIDTH-1:0] count;
            wire             cleared = read && index == i;
            assign values[WIDTH*i +: WIDTH] = count;
            always @(posedge clk or posedge rst)
                if (rst) count <= {WIDTH{1'b0}};
                else if (cleared) count <= {{WIDTH-1{1'b0}}, bump[i]};
                else if (bump[i] && !(&count)) count <= count + 1'b1;
        end
    endgenerate

    integer n;
    always @* begin
        value = 32'd0;
        for (n = 0; n < COUNTERS; n = n + 1)
            if (index == n) value[WIDTH-1:0] = values[WIDTH*n +: WIDTH];
    end

endmodule
