// What Verilog 2001 added.
(* top = 1, keep *) module all #(parameter W = 8, parameter signed [3:0] S = -1, parameter real R = 1.5) (
  (* io = "yes" *) input wire signed [W-1:0] a, b, input clk,
  output reg [W-1:0] q = 0, r, output wire y, inout [3:0] io);
  localparam integer N = 3;
  localparam M = 4;
  parameter time T = 10, T2 = 5;
  specparam SP = 1:2:3;
  wire signed [3:0] w1, w2 = 4'sb10x1;
  wire [7:0] nets [0:3];
  reg [7:0] mem [0:255], mem2 [3:0][0:7];
  reg rr = 1'b1;
  integer i = 0;
  genvar g, h;
  (* x *) assign y = mem2[1][2][3] + a[3 -: 4] + b[0 +: 4] + mem[3][W-1 : 0];
  assign w1 = a <<< 2 >>> 1 ** 3;
  sub #(.P(3), .Q()) u1 (.a(a), (* c *) .b(), .c({a, b}));
  function automatic signed [W-1:0] f(input signed [W-1:0] p, input integer k);
    reg [3:0] t;
    begin
      t = p;
      f = k ? f(t, k - 1) : t;
    end
  endfunction
  function [7:0] f2 (input [7:0] p, q, input r);
    f2 = p & q;
  endfunction
  task automatic tk (input x1, output reg y1);
    y1 = x1;
  endtask
  always @* case (a) 1, 2: q = 1; default: q = 2; endcase
  always @(*) r = a;
  always @( * ) r = a;
  always @(posedge clk, negedge a[0]) if (!a[0]) q <= 0; else q <= f (* y *) (a, 3) + f2(a, b, 1);
  always begin casex (a) (* full *) 3'bx1z: q = a + (* x *) b; endcase (* par *) q = 1; end
  always @(a) q = a ? (* z *) b : ! (* n *) a;
  generate
    for (g = 0; g < 4; g = g + 1) begin : blk
      wire t;
      sub #(g) u (t);
      if (g == 0) assign t = 1; else if (g == 1) begin assign t = 0; end else begin : other assign t = 1; end
      case (g) 0: wire c; 1, 2: begin wire d; end default: ; endcase
    end
    if (W > 4) wire big; else wire small_w;
    begin : plain wire pw; end
  endgenerate
  for (h = 0; h < 2; h = h + 1) always @(posedge clk) r[h] <= a[h];
  if (W == 1) sub only (a);
  case (W) 1: sub one (a); default: sub other (a); endcase
  specify
    showcancelled y;
    noshowcancelled y;
    pulsestyle_onevent y;
    pulsestyle_ondetect y, q;
    $timeskew(posedge clk, posedge a, 3, , 1);
  endspecify
endmodule
primitive udp2 (output y, input a, b);
  table
    0 0 : 0;
    1 ? : 1;
  endtable
endprimitive
primitive udp3 (output reg q = 1'b1, input d);
  table
    f : ? : 1;
    n : 0 : -;
  endtable
endprimitive
config cfg;
  design work.all other;
  default liblist work lib2;
  instance all.u1 use work.sub;
  instance all.u1.u2 use z:config;
  instance all.u3 liblist a b;
  cell x.y liblist a;
  cell z use lib.z:config;
endconfig
module sub;
endmodule
