1module ram_negate(input [7:0] i, output [7:0] o); assign o = ~i; endmodule

module ram_port(input clk, we, input [3:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) if (we) mem[a] <= d;
  ram_negate s(.i(mem[b]), .o(q));
endmodule
