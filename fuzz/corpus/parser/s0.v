1(* top = 1, keep *) module all #(parameter W = 8, parameter signed [3:0] S = -1, parameter real R = 1.5) (
  (* io = "yes" *) input wire signed [W-1:0] a, b, input clk,
  output reg [W-1:0] q = 0, r, output wire y, inout [3:0] io);
  localparam integer N = 3; parameter time T = 10, T2 = 5;
  specparam SP = 1:2:3;
  wire signed [3:0] w1, w2 = 4'b10x1;
  wire (strong0, pull1) [1:0] #(1,2,3) ws = 2'sb01;
  trireg (small) #(0,0,10) cap;
  tri1 vectored [7:0] tv; supply0 gnd; wand scalared [2:0] wa;
  reg [7:0] mem [0:255], mem2 [3:0][0:7]; reg rr = 1'b1;
  integer i, j; real x = 2.5e3; realtime rt; time tm; event e1, e2;
  genvar g, h;
  defparam u1.P = 3, blk[0].u.Q = 4;
  assign y = &a | ~|b ^ ^a ~^ b, w1 = a ? b : q;
  assign (weak0, weak1) #3 io = {4{clk}};
  assign {w2[0], w2[3:1]} = a[3 -: 4] + b[0 +: 4];
  and (strong0, strong1) #(1,2) a1 (w1[0], a[0], b[0]), (w1[1], a, b);
  bufif0 #1 (tv[0], clk, a); nmos n1 [3:0] (io, w1, clk); pullup (io[0]); tran t1(io[1], io[2]);
  cmos (w1, w2, clk, y);
  sub #(.P(3), .Q()) u1 (.a(a), .b(), .c({a, b})), u2 [1:0] (a, , b);
  sub #(3, 4) u3 (a, b[2:0]); sub #5 u4 (); udp (strong0, pull1) #1 (y, a, b);
  function automatic signed [W-1:0] f;
    input signed [W-1:0] p; input integer k; reg [3:0] t;
    begin t = p; f = t + k; end
  endfunction
  function [7:0] f2 (input [7:0] p, q, input r); f2 = p & q; endfunction
  task tk; input a1; output [3:0] b1; inout c1; begin : named reg z; z = a1; #10 b1 = z; end endtask
  task automatic tk2 (input x1, output reg y1); y1 = x1; endtask
  initial begin : init
    reg [3:0] loc; integer n;
    for (i = 0; i < 10; i = i + 1) mem[i] = i * 2 ** 3 % 5;
    while (i > 0) i = i - 1;
    repeat (3) @(posedge clk) ;
    forever #5 rr = ~rr;
    loc = #3 4'hF; q <= repeat (2) @(negedge clk) a; r <= @(clk or a) b; r <= #(1:2:3) b;
    -> e1; @e1 ; @(e1, e2) disable init; wait (clk) r = 1;
    fork : fk reg z; z = 1; join
    $display("hi %d\n\t\"q\"", a, , b); $finish; tk(a[0], q, io[0]);
    assign q = 1; deassign q; force y = 0; release y;
    if (a == b) q = 1; else if (a != b && !(a === b) || a !== b) q = 2; else ;
    #1.5 q = 3; #(T) ;
    u1.t.x = 5; blk[1].u.z[3] = 1;
  end
  always @(posedge clk or negedge a[0]) if (!a[0]) q <= 0; else q <= f(a, 3) + f2(a, b, 1);
  always @* case (a) 1, 2: q = 1; default: q = 2; endcase
  always @( * ) casez (a) 8'b1???_???? : q = 1; 8'h0z: ; default q = 3; endcase
  always begin casex (a) (* full *) 3'bx1z: q = a + (* x *) b; endcase (* par *) q = 1; end
  generate
    for (g = 0; g < 4; g = g + 1) begin : blk
      wire t; sub #(g) u (t);
      if (g == 0) assign t = 1; else if (g == 1) begin assign t = 0; end else begin : other assign t = 1; end
      case (g) 0: wire c; 1, 2: begin wire d; end default: ; endcase
    end
    if (W > 4) wire big; else wire small_w;
    begin : plain wire pw; end
  endgenerate
  for (h = 0; h < 2; h = h + 1) always @(posedge clk) r[h] <= a[h];
  if (W == 1) sub only (a);
  specify
    specparam tr = 1, tf = (1:2:3), PATHPULSE$a$b = (1, 2);
    (a => y) = 3; (a, b *> y) = (1, 2); (posedge clk => (q +: a)) = (1,2,3); (clk - => q) = 2;
    if (a) (a => y) = 1:2:3; ifnone (a => y) = 4; (negedge clk *> (q : a)) = 1;
    $setup(a, posedge clk &&& b, 3); $hold(posedge clk, a, 2, n); $width(edge[01, 10] clk, 1);
    showcancelled y; pulsestyle_onevent y;
  endspecify
  wire \esc$ , \a+b ; assign \a+b = \esc$ ;
endmodule
