// What SystemVerilog added.
timeunit 1ns / 1ps;
package p;
  typedef logic [7:0] byte_t;
  typedef enum logic [1:0] {IDLE, RUN = 2'd2, STOP} state_t;
  typedef enum {A[3], B[2:1] = 8, C} many_t;
  typedef struct packed { logic valid; byte_t data; state_t [1:0] s; } pkt_t;
  typedef struct packed signed { logic [3:0] a, b; } [1:0] pair_t;
  typedef union packed { logic [7:0] a; byte_t b; } u_t;
  typedef union tagged { void Invalid; int Valid; } tag_t;
  typedef enum bit {OFF, ON} [3:0] flags_t;
  parameter int WIDTH = 8;
  localparam logic [3:0] K = 4'hA;
  function automatic int add(int a, b); return a + b; endfunction
  function void nothing(); endfunction : nothing
  task t(); endtask : t
endpackage : p
typedef p::byte_t global_t;
parameter int G = 3;
function automatic global_t gf(global_t x); return x; endfunction
package automatic q;
  import p::*;
  localparam byte_t Z = 1;
endpackage
extern module later (input logic a, output logic y);
interface bus #(parameter W = 4, type T = logic) (input logic clk);
  T [W-1:0] d;
  function automatic int f(int x); return x; endfunction
  modport mst (output d, (* x = 1 *) input clk, import f, input .low(d[1:0])), slv (input d, clk);
  modport tb (import function int f(int x), export task g());
endinterface : bus
module automatic m import p::*; #(int W = 8, parameter type T = logic, U = int, localparam D = W * 2) (
  input logic clk, rst, input byte_t a, output state_t st, output logic [W-1:0] o [3:0], bus.mst b, bus b2,
  interface c, interface.slv e [2], input var int z, inout wire w, logic l, output p::pkt_t pk);
  timeunit 1ns; timeprecision 1ps;
  import p::add, p::WIDTH;
  localparam type L = T, M = U;
  parameter type NT = L;
  p::byte_t y; state_t state, next; pkt_t pkt; T tt; u_t un; pair_t pr; global_t gl; $unit::global_t g2;
  logic [3:0][7:0] mp; bit [7:0] mem [16]; byte by; shortint si; longint li; int unsigned ui; real r; string s;
  byte unsigned bu; shortreal sr; chandle ch;
  var logic v; const int k = 3; int arr [2][3] = '{'{1, 2, 3}, '{default: 0}};
  typedef struct { int x; logic [3:0] n; } loc_t; loc_t lt = '{x: 1, n: 4'd2};
  enum {X1, X2} ev; struct packed { logic q1; } anon;
  wire logic [3:0] wl;
  module inner #(int N = 1) (input T x); endmodule : inner
  interface inner_bus; wire w; endinterface
  inner #(2) in (.x(tt));
  always_comb begin
    unique case (state) IDLE: next = RUN; RUN, STOP: next = IDLE; default: ; endcase
    priority if (a == 1) y = '0; else if (a[3:0] == '1) y = 'x; else y = byte_t'(a + 8'd1);
    unique if (a) y = 'z;
    priority casez (a) 8'b1???????: y = 1; endcase
    y = p::byte_t'(3); y = 4'(a); ui = signed'(a); ui = W'(a); ui = (W+1)'(a); ui = int'(r);
    for (int i = 0, j = 3; i < 4; i++, j--) begin automatic int t = i; mp[i] += t; if (i == 2) continue; break; end
    for (int i = 0, int j = 1; i < 4; i += 1) begin : lp mp[i] -= 8'd1; end : lp
    foreach (mem[i]) mem[i] = i;
    foreach (arr[i, j]) arr[i][j] = i + j;
    foreach (arr[, j]) arr[0][j] = j;
    do y++; while (y < 3); --y; y <<<= 2; y >>>= 1; y <<= 1; y >>= 1; y *= 2; y /= 2; y %= 3; y &= 1; y |= 2; y ^= 3;
    {y[0], y[1]} = 2'b01; '{y, by} = lt;
    pkt = '{valid: 1'b1, data: a, default: 0}; pkt = pkt_t'{1, 2, 3}; mem = '{16{8'h0}};
    if (y ==? 8'b1?) y = 1; if (y !=? 2) y = add(1, p::add(.a(1), .b(2)));
    if (y inside {1, [3:5], [7:$]}) y = 2;
    void'(add(1, 2)); pkt.data[3:0] = 4'd1; nothing(); if ((y = 1)) y = $bits(byte_t) + $bits(logic [3:0]);
    if ((y += 2) > 1) y = ++y + --by + y++ - by--;
    unique case (y) inside 1, [2:3]: by = 1; 8'b1???????, [40:$]: by = 2; default by = 3; endcase
    assert (y == 1) else $error("x"); assume (y); lbl: assert (y) y = 1; else y = 2;
    if (y) assert (a) y = 1; else y = 2;
    cover (y);
    if (un matches tagged Valid .n &&& y == 1) y = 1; else if (un matches .*) #1ns y = 2;
    state = state.next(); ui = state.num; state = state.prev(2); s = state.name();
  end
  always_ff @(posedge clk or negedge rst) if (!rst) st <= IDLE; else st <= next;
  always_ff @(posedge clk iff rst) v <= a[0];
  always @(posedge clk iff rst or negedge l) v <= a[0];
  always @(posedge clk iff y[0] or negedge rst) if (!rst) v <= 0; else v <= a[0];
  always_latch if (l) v <= a[0];
  final $display("end");
  bus bi (.clk); bus bj (.*), bk (.clk, .*);
  sub #(.T(byte_t), .W(W)) s1 (.a, .b(b.d), .c());
  sub #(.T(logic [3:0])) s2 [3:0] (.*);
  generate for (genvar i = 0; i < 4; i++) begin : g logic t; assign t = a[i]; end : g endgenerate
  for (genvar i = 0; i < 4; i = i + 1) assign o[i] = a;
  assert property (@(posedge clk) disable iff (rst) a |-> ##[1:3] b2.d) else $error("no");
  cv: cover property (@(posedge clk) a ##1 y[*2:3] ##1 l[->1] ##0 (v, k2 = 1) throughout y within a intersect l);
  assume property (not (a and y or l) |=> if (a) y else l);
  property pr1(x, int n = 2); int lv; @(posedge clk) first_match(x ##n y) |=> y[=3]; endproperty
  sequence sq; a ##1 y; endsequence : sq
  ;
  function automatic byte_t fn(input byte_t x, logic [3:0] y2, ref int rr); byte_t tmp; tmp = x; return tmp; endfunction
  function static int fs(); return 1; endfunction
  task tsk(input int n = 3, output int o); o = n; n = 1; return; endtask
  initial begin
    int loc; static int st2 = 3; loc = 1;
    foo: begin end
    bar: fork join_any
    loc++;
    fork join_none
    wait (a) ;
  end
endmodule : m
extern module m3 #(parameter W = 2) (input byte i, output logic [W-1:0] o);
module m3 (.*); assign o = 1; endmodule
typedef ahead_t; typedef ahead_t ahead_a [2]; typedef struct packed { logic a; } ahead_t;
module m2 (global_t h, output p::byte_t o); assign o = h[7:0]; endmodule
