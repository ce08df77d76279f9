// run each: --option HDL_MESSAGE_LEVEL=HIGH --std=vlog2001
module two_defaults(input [1:0] a, output reg y);
  always @(a) case (a)
    0: y = 1;
    default: y = 0;
    default: y = 1; // expect: error VERI-1077 10102 "default case should appear only once"
  endcase
endmodule
module item_too_wide(input [1:0] a, output reg y);
  always @(a) case (a)
    3'b001: y = 1; // expect: warning VERI-1216 10204 "case item expression size (3) should not exceed case expression size (2)" ; information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    3'b100: y = 0; // expect: warning VERI-1216 10204 "case item expression size (3) should not exceed case expression size (2)" ; warning VERI-2005 10199 "case item expression never matches the case expression"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module with_x(input [1:0] a, output reg y); // expect: warning VDB-2016 10862 "input port \"a[1..0]\" at cases.v(16) has no fan-out"
  always @(a) case (a)
    2'b0x: y = 1; // expect: warning VERI-2045 10274 "case item expression never matches the case expression because it contains an x or z"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module item_short(input [2:0] a, output reg y);
  always @(a) case (a)
    2'b01: y = 1; // expect: warning VERI-2039 10271 "case item expression size (2) is less than case expression size (3)" ; information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module overlaps(input [1:0] a, output reg y);
  always @(a) case (a)
    0, 1: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    1: y = 0; // expect: warning VERI-2040 10272 "case item overlaps with a previous case item" ; information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module wild_overlaps(input [1:0] a, output reg y); // expect: warning VDB-2016 10862 "input port \"a[0]\" at cases.v(35) has no fan-out"
  always @(a) casez (a)
    2'b1?: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    2'b?1: y = 0; // expect: warning VERI-2047 10275 "casex or casez item overlaps with a previous casex or casez item" ; information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module incomplete(input [1:0] a, output reg y);
  always @(a) begin
    y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    case (a) // expect: warning VERI-2038 10270 "case statement is incomplete"
      0: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    endcase
  end
endmodule
module wide(input [39:0] a, output reg y);
  always @(a) begin
    y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    case (a) // expect: warning VERI-2084 10762 "can't check case statement for completeness because the case expression has too many possible states" ; warning VERI-2038 10270 "case statement is incomplete"
      0: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
      5: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    endcase
  end
endmodule
module unsure(input [1:0] a, b, output reg y);
  always @(a or b) begin
    y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    case (a) // expect: warning VERI-2085 10763 "case statement has overlapping case item expressions with non-constant or don't care bits - unable to check case statement for completeness"
      b: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    endcase
  end
endmodule
module full(input [1:0] a, output reg y);
  always @(a) case (a) // synthesis full_case // expect: warning VERI-1173 10208 "honored full_case synthesis attribute - differences between design synthesis and simulation may occur"
    0: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    1: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module full_default(input [1:0] a, output reg y);
  always @(a) (* full_case *) case (a) // expect: warning VERI-2090 10766 "ignoring full_case attribute on case statement with explicit default"
    0: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module parallel(input [1:0] a, output reg y); // expect: warning VDB-2016 10862 "input port \"a[0]\" at cases.v(79) has no fan-out"
  always @(a) (* parallel_case *) casez (a) // expect: warning VERI-1174 10209 "honored parallel_case synthesis attribute - differences between design synthesis and simulation may occur"
    2'b1?: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    2'b?1: y = 0; // expect: warning VERI-2047 10275 "casex or casez item overlaps with a previous casex or casez item" ; information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    default: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
  endcase
endmodule
module onehot(input [2:0] a, output reg y);
  always @(a) begin
    y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    case (a) // expect: warning VERI-2038 10270 "case statement is incomplete" ; information VERI-2031 10265 "consider adding a full_case attribute to enable additional optimizations to this case statement with onehot case item expressions"
      3'b001: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
      3'b010: y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
      3'b100: y = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information"
    endcase
  end
endmodule
