1module ram_block(input clk, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  always @(posedge clk) begin : blk
    reg [7:0] mem [0:15];
    if (we) mem[a] = d;
    q <= mem[b];
  end
endmodule
