1module regs_in_function(input clk, we, input [1:0] a, b, c, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:3];
  function [7:0] word(input [1:0] at);
    word = mem[at];
  endfunction
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= word(b) + word(c);
  end
endmodule
