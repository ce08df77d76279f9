1module ram_one(input clk, we, a, b, d, output q);
  reg mem [0:1];
  always @(posedge clk) if (we) mem[a] <= d;
  assign q = mem[b];
endmodule
