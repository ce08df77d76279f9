1module m import p::*; #(int W = 8, parameter type T = logic, localparam D = W * 2) (
  input logic clk, rst, input byte_t a, output state_t st, output logic [W-1:0] q [3:0], bus.mst b, bus b2,
  input var int z, inout wire w, logic l, output p::pkt_t pk);
  timeunit 1ns; timeprecision 1ps;
  import p::add, p::WIDTH;
  p::byte_t y; state_t state, next; pkt_t pkt; T tt; u_t un;
  logic [3:0][7:0] mp; bit [7:0] mem [16]; byte by; shortint si; longint li; int unsigned ui; real r; string s;
  var logic v; const int k = 3; int arr [2][3] = '{'{1, 2, 3}, '{default: 0}};
  typedef struct { int x; logic [3:0] n; } loc_t; loc_t lt = '{x: 1, n: 4'd2};
  enum {X1, X2} ev; struct packed { logic q1; } anon;
  wire logic [3:0] wl;
  always_comb begin
    unique case (state) IDLE: next = RUN; RUN, STOP: next = IDLE; default: ; endcase
    priority if (a == 1) y = '0; else if (a[3:0] == '1) y = 'x; else y = byte_t'(a + 8'd1);
    y = p::byte_t'(3); y = 4'(a); ui = signed'(a); ui = W'(a); ui = (W+1)'(a); ui = int'(r);
    for (int i = 0, j = 3; i < 4; i++, j--) begin automatic int t = i; mp[i] += t; if (i == 2) continue; break; end
    for (int i = 0; i < 4; i += 1) begin : lp mp[i] -= 8'd1; end : lp
    do y++; while (y < 3); --y; y <<<= 2; {y[0], y[1]} = 2'b01; '{y, by} = lt;
    pkt = '{valid: 1'b1, data: a, default: 0}; pkt = pkt_t'{1, 2, 3}; mem = '{16{8'h0}};
    if (y ==? 8'b1?) y = 1; if (y !=? 2) y = add(1, p::add(.a(1), .b(2)));
    void'(add(1, 2)); pkt.data[3:0] = 4'd1; nothing(); if ((y = 1)) y = $bits(byte_t) + $bits(logic [3:0]);
    assert (y == 1) else $error("x"); assume (y); lbl: assert (y) y = 1; else y = 2;
  end
  always_ff @(posedge clk or negedge rst) if (!rst) st <= IDLE; else st <= next;
  always_latch if (l) v <= a[0];
  final $display("end");
  bus bi (.clk); bus bj (.*), bk (.clk, .*);
  sub #(.T(byte_t), .W(W)) s1 (.a, .b(b.d), .c());
  sub #(.T(logic [3:0])) s2 [3:0] (.*);
  generate for (genvar i = 0; i < 4; i++) begin : g logic t; assign t = a[i]; end : g endgenerate
  for (genvar i = 0; i < 4; i = i + 1) assign q[i] = a;
  assert property (@(posedge clk) disable iff (rst) a |-> ##[1:3] b) else $error("no");
  cv: cover property (@(posedge clk) a ##1 b);
  property pr; @(posedge clk) a |=> b; endproperty
  sequence sq; a ##1 b; endsequence : sq
  covergroup cg; coverpoint a; endgroup
  clocking cb @(posedge clk); input a; endclocking
  ;
  function automatic byte_t fn(input byte_t x, logic [3:0] y2, ref int rr); byte_t tmp; tmp = x; return tmp; endfunction
  task tsk(input int n = 3, output int o); o = n; n = 1; return; endtask
  initial begin int loc; static int st2 = 3; loc = 1; foo: begin end loc++; fork join_none wait (a) ; end
endmodule : m
typedef logic [15:0] half_t; parameter int G = 3; function automatic half_t gf(half_t x); return x; endfunction
