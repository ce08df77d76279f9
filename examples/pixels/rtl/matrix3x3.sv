// A vector of three signed values times a matrix of signed constants with eight fraction bits, rounded; a register
// stage holds the sums.
module matrix3x3 #(
  parameter signed [9:0] M00 = 10'sd256, M01 = 10'sd0,   M02 = 10'sd0,
  parameter signed [9:0] M10 = 10'sd0,   M11 = 10'sd256, M12 = 10'sd0,
  parameter signed [9:0] M20 = 10'sd0,   M21 = 10'sd0,   M22 = 10'sd256
) (
  input  logic               clk,
  input  logic               rst,
  input  logic               step,
  input  logic signed [8:0]  a, b, c,
  output logic signed [11:0] x, y, z
);

  logic signed [20:0] sum_x, sum_y, sum_z;

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      sum_x <= '0;
      sum_y <= '0;
      sum_z <= '0;
    end else if (step) begin
      sum_x <= M00 * a + M01 * b + M02 * c + 21'sd128;
      sum_y <= M10 * a + M11 * b + M12 * c + 21'sd128;
      sum_z <= M20 * a + M21 * b + M22 * c + 21'sd128;
    end

  assign x = sum_x >>> 8;
  assign y = sum_y >>> 8;
  assign z = sum_z >>> 8;

endmodule
