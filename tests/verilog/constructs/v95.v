// Every construct of Verilog 1995.
module all (a, b, .x(c), {d, e}, f[3:0], , q, y, io);
  parameter W = 8, V = 2 + W;
  parameter [3:0] P = 4'b10x1;
  input a, b;
  input [W-1:0] c;
  input d, e;
  input [7:0] f;
  output [7:0] q;
  output y;
  inout [3:0] io;
  reg [7:0] q;
  wire [3:0] w1, w2;
  wire (strong0, pull1) [1:0] #(1, 2, 3) ws = 2'b01;
  trireg (small) #(0, 0, 10) cap;
  tri1 vectored [7:0] tv;
  supply0 gnd;
  wand scalared [2:0] wa;
  wor wo;
  tri t0;
  triand ta;
  trior to;
  reg [7:0] mem [0:255];
  reg r, s;
  integer i, j, arr [0:3];
  real x;
  realtime rt;
  time tm;
  event e1, e2;
  defparam u1.P = 3, u2.Q = 4;
  assign y = &c | ~|c ^ ^c ~^ b, w1 = a ? c : q;
  assign (weak0, weak1) #3 io = {4{a}};
  assign {w2[0], w2[3:1]} = c[3:0] + 4'd1;
  and (strong0, strong1) #(1, 2) a1 (w1[0], a, b), (w1[1], a, b);
  nand (ta, a, b);
  or o1 (to, a, b);
  nor (wo, a, b);
  xor (t0, a, b);
  xnor #3 (wo, a, b);
  buf (w2[1], w2[2], a);
  not n0 (w2[3], a);
  bufif0 (tv[1], a, b);
  bufif1 #1 (tv[0], a, b);
  notif0 (tv[2], a, b);
  notif1 (tv[3], a, b);
  nmos n1 [3:0] (io, w1, a);
  pmos (io[0], a, b);
  rnmos (io[0], a, b);
  rpmos (io[0], a, b);
  cmos (w1[0], w2[0], a, b);
  rcmos (w1[0], w2[0], a, b);
  pullup (io[0]);
  pulldown (pull0) pd (io[1]);
  tran t1 (io[1], io[2]);
  rtran (io[1], io[2]);
  tranif0 (io[1], io[2], a);
  tranif1 (io[1], io[2], a);
  rtranif0 (io[1], io[2], a);
  rtranif1 (io[1], io[2], a);
  sub #(3, 4) u1 (.p(a), .q(), .r({a, b}));
  sub #5 u2 (a, , b), u3 [1:0] (a, b);
  sub u4 ();
  udp (strong0, pull1) #1 (y, a, b);
  udp2 g1 (y, a, b), g2 (y, a, b);
  function [7:0] f2;
    input [7:0] p, o;
    reg [3:0] t;
    begin
      t = p;
      f2 = p & o + t;
    end
  endfunction
  function integer f3;
    input p;
    f3 = p;
  endfunction
  task tk;
    input a1;
    output [3:0] b1;
    inout c1;
    begin : named
      reg z;
      z = a1;
      #10 b1 = z;
    end
  endtask
  task empty;
    ;
  endtask
  initial begin : init
    reg [3:0] loc;
    integer n;
    for (i = 0; i < 10; i = i + 1) mem[i] = i * 2 / 3 % 5;
    while (i > 0) i = i - 1;
    repeat (3) @(posedge a) ;
    loc = #3 4'hF;
    q <= repeat (2) @(negedge a) c;
    q <= @(a or b) c;
    q <= #(1:2:3) c;
    -> e1;
    @e1 ;
    @(e1 or e2) disable init;
    wait (a) r = 1;
    fork : fk
      reg z;
      z = 1;
    join
    fork
      r = 1;
    join
    $display("hi %d\n\t\"q\" \\", a, , b);
    $finish;
    $stop(1);
    tk(a, q, r);
    empty;
    assign q = 1;
    deassign q;
    force y = 0;
    release y;
    if (a == b) q = 1; else if (a != b && !(a === b) || a !== b) q = 2; else ;
    if (a) begin if (b) r = 1; end else r = 0;
    if (a) while (b) begin if (c) r = 1; end else r = 0;
    #1.5 q = 3;
    #(P) ;
    #P r = 1;
    u1.t.x = 5;
    x = 1.5e3 + 2.5 - 1e-3;
    r = c[0] & ~q[1] << 2 >> 1 >= 3 <= 4;
    forever #5 s = ~s;
  end
  always @(posedge a or negedge b) if (!b) q <= 0; else q <= f2(c, 3);
  always @(a or b) case (c) 1, 2: q = 1; default: q = 2; endcase
  always @(a) casez (c) 8'b1???_???? : q = 1; 8'h0z: ; default q = 3; endcase
  always @(a) casex (c) 8'bx1z: q = -8'd1; 'o17: q = 'h1F; 12: q = 4'hz; endcase
  specify
    specparam tr = 1, tf = (1:2:3), PATHPULSE$a$y = (1, 2);
    (a => y) = 3;
    (a, b *> y) = (1, 2);
    (posedge a => (q +: c)) = (1, 2, 3);
    (a - => q) = 2;
    (negedge a *> (q : c)) = 1;
    (edge a + *> (q - : c)) = (1, 2, 3, 4, 5, 6);
    if (a) (a => y) = 1:2:3;
    ifnone (a => y) = 4;
    $setup(a, posedge b &&& c, 3);
    $hold(posedge a, b, 2, r);
    $width(edge[01, 10] a, 1);
    $period(posedge a, tr);
    $recovery(posedge a &&& (b == 1), negedge b, 3, s);
  endspecify
  wire \esc$ , \a+b ;
  assign \a+b = \esc$ ;
endmodule
primitive udp (y, a, b);
  output y;
  reg y;
  input a, b;
  initial y = 1'b0;
  table
    0 0 : ? : 0;
    (01) ? : 0 : 1;
    r * : 1 : -;
    (1x) b : ? : x;
  endtable
endprimitive
primitive udp2 (y, a, b);
  output y;
  input a, b;
  table
    0 0 : 0;
    1 ? : 1;
  endtable
endprimitive
macromodule sub (p, q, r);
  input p, r;
  output q;
endmodule
module none;
endmodule
