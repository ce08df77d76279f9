1module ram_dual(input clk, wea, web, input [2:0] a, b, input [7:0] da, db, output reg [7:0] qa, qb);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin
    if (wea) mem[{1'b0, a}] <= da;
    qa <= mem[{web, a}];
  end
  always @(posedge clk) begin
    if (web) mem[{1'b1, b}] <= db;
    qb <= mem[{wea, b}];
  end
endmodule
