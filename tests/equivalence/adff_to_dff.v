// Registers with an asynchronous control as plain registers whose next state knows the control, for a proof over one
// clock step with registers cut at their outputs. That the control acts at once is left to simulation.
(* techmap_celltype = "$adff" *)
module adff_as_dff (CLK, ARST, D, Q);
  parameter WIDTH = 1;
  parameter CLK_POLARITY = 1'b1;
  parameter ARST_POLARITY = 1'b1;
  parameter ARST_VALUE = 0;
  input CLK, ARST;
  input [WIDTH-1:0] D;
  output [WIDTH-1:0] Q;
  \$dff #(.WIDTH(WIDTH), .CLK_POLARITY(CLK_POLARITY)) _TECHMAP_REPLACE_ (
    .CLK(CLK), .D(ARST == ARST_POLARITY ? ARST_VALUE : D), .Q(Q));
endmodule

(* techmap_celltype = "$dffsr" *)
module dffsr_as_dff (CLK, SET, CLR, D, Q);
  parameter WIDTH = 1;
  parameter CLK_POLARITY = 1'b1;
  parameter SET_POLARITY = 1'b1;
  parameter CLR_POLARITY = 1'b1;
  input CLK;
  input [WIDTH-1:0] SET, CLR, D;
  output [WIDTH-1:0] Q;
  wire [WIDTH-1:0] set = SET_POLARITY ? SET : ~SET;
  wire [WIDTH-1:0] clear = CLR_POLARITY ? CLR : ~CLR;
  \$dff #(.WIDTH(WIDTH), .CLK_POLARITY(CLK_POLARITY)) _TECHMAP_REPLACE_ (.CLK(CLK), .D((D | set) & ~clear), .Q(Q));
endmodule
