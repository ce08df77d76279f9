// Interfaces, modports, and methods of enumerations: features that only verilator reads.

interface link_if;
  logic [3:0] data;
  logic       valid;
  logic       ready;
  modport master (output data, output valid, input ready);
  modport slave (input data, input valid, output ready);
endinterface

module link_source (input logic [3:0] a, link_if.master link, output logic seen);
  assign link.data = a + 4'd1;
  assign link.valid = |a;
  assign seen = link.ready;
endmodule

module link_sink (link_if.slave link, output logic [3:0] y);
  assign link.ready = link.data[0];
  assign y = link.valid ? link.data : 4'd0;
endmodule

// verilate: an interface between two modules, limited by modports
module interface_modports (input logic [3:0] a, output logic [3:0] y, output logic seen);
  link_if link ();
  link_source source (.a(a), .link(link), .seen(seen));
  link_sink sink (.link(link), .y(y));
endmodule

// verilate: the modport given by the connection
module interface_selected (input logic [3:0] a, output logic [3:0] y, output logic seen);
  link_if link ();
  link_source source (a, link.master, seen);
  link_sink sink (link.slave, y);
endmodule

// verilate: members of an interface used where it is instantiated
module interface_members (input logic [3:0] a, input logic v, output logic [3:0] y, output logic r);
  link_if link ();
  assign link.data = a;
  assign link.valid = v;
  link_sink sink (.link(link), .y(y));
  assign r = link.ready & link.data[3];
endmodule

interface word_if #(parameter int WIDTH = 8);
  logic [WIDTH-1:0] word;
  logic             flag;
  modport give (output word, output flag);
  modport take (input word, input flag);
endinterface

module word_giver (input logic [3:0] a, word_if.give w);
  assign w.word = {a, a, a};
  assign w.flag = a[0];
endmodule

module word_taker (word_if.take w, output logic [11:0] y, output logic f);
  assign y = w.word;
  assign f = w.flag;
endmodule

// verilate: a parameter of an interface, which the modules behind its ports have, too
module interface_parameter (input logic [3:0] a, output logic [11:0] x, y, output logic f, g);
  word_if #(.WIDTH(6)) narrow ();
  word_if wide ();
  word_giver g1 (a, narrow);
  word_taker t1 (narrow, x, f);
  word_giver g2 (.a(~a), .w(wide));
  word_taker t2 (.w(wide), .y(y), .f(g));
endmodule

interface clocked_if (input logic clk, input logic rst);
  logic [3:0] count;
  logic       step;
  always_ff @(posedge clk) if (rst) count <= '0; else if (step) count <= count + 4'd1;
  modport user (input count, output step);
endinterface

module count_user (clocked_if.user port, input logic go, output logic [3:0] y);
  assign port.step = go && port.count != 4'd9;
  assign y = port.count;
endmodule

// verilate: an interface with ports and logic of its own
module interface_logic (input logic clk, rst, input logic go, output logic [3:0] y, output logic top);
  clocked_if counter (.clk(clk), .rst(rst));
  count_user user (.port(counter), .go(go), .y(y));
  assign top = counter.count[3];
endmodule

module link_relay (link_if.slave up, link_if.master down);
  assign down.data = ~up.data;
  assign down.valid = up.valid;
  assign up.ready = down.ready;
endmodule

module link_nest (link_if.slave link, output logic [3:0] y);
  link_if inner ();
  link_relay relay (.up(link), .down(inner));
  link_sink sink (.link(inner), .y(y));
endmodule

// verilate: an interface port that is passed through several levels
module interface_nested (input logic [3:0] a, output logic [3:0] y, output logic seen);
  link_if link ();
  link_source source (.a(a), .link(link), .seen(seen));
  link_nest nest (.link(link), .y(y));
endmodule

module open_writer (input logic [3:0] a, link_if link);
  assign link.data = a;
  assign link.valid = a[3];
endmodule

module open_reader (link_if link, output logic [3:0] y);
  always_comb begin
    link.ready = link.valid;
    y = link.data ^ {4{link.ready}};
  end
endmodule

// verilate: ports without a modport
module interface_open (input logic [3:0] a, output logic [3:0] y);
  link_if link ();
  open_writer writer (.a(a), .link(link));
  open_reader reader (.link(link), .y(y));
endmodule

package packet_pkg;
  typedef struct packed { logic [3:0] head; logic [3:0] tail; } packet_t;
endpackage

interface packet_if;
  packet_pkg::packet_t packet;
  logic [3:0]          list [0:1];
  modport out (output packet, output list);
  modport in (input packet, input list);
endinterface

module packet_giver (input logic [3:0] a, packet_if.out p);
  assign p.packet.head = a;
  assign p.packet.tail = ~a;
  assign p.list[0] = a + 4'd3;
  assign p.list[1] = a - 4'd3;
endmodule

module packet_taker (packet_if.in p, input logic i, output logic [3:0] y, z);
  always_comb y = p.packet.head + p.packet.tail[1:0];
  assign z = p.list[i];
endmodule

// verilate: structures and arrays in an interface
module interface_types (input logic [3:0] a, input logic i, output logic [3:0] y, z);
  packet_if p ();
  packet_giver giver (.a(a), .p(p));
  packet_taker taker (.p(p), .i(i), .y(y), .z(z));
endmodule

// verilate: an array of interfaces and a generate loop over it
module interface_array (input logic [7:0] a, output logic [7:0] y, output logic [1:0] seen);
  link_if links [1:0] ();
  for (genvar i = 0; i < 2; i++) begin : lane
    link_source source (.a(a[4 * i +: 4]), .link(links[i]), .seen(seen[i]));
    link_sink sink (.link(links[i]), .y(y[4 * i +: 4]));
  end
endmodule

module link_register (input logic clk, rst, link_if.slave up, link_if.master down);
  assign up.ready = down.ready || !down.valid;
  always_ff @(posedge clk)
    if (rst) begin
      down.valid <= 1'b0;
      down.data <= '0;
    end else if (up.ready) begin
      down.valid <= up.valid;
      down.data <= up.data;
    end
endmodule

// verilate: a chain of registers between interfaces
module interface_chain (input logic clk, rst, input logic [3:0] a, input logic v, r, output logic [3:0] y,
                        output logic yv, ar);
  link_if l0 ();
  link_if l1 ();
  link_if l2 ();
  assign l0.data = a;
  assign l0.valid = v;
  assign ar = l0.ready;
  link_register r1 (.clk, .rst, .up(l0), .down(l1));
  link_register r2 (.clk, .rst, .up(l1), .down(l2));
  assign l2.ready = r;
  assign y = l2.data;
  assign yv = l2.valid;
endmodule

// verilate: the next, the previous, the first and the last member of an enumeration
module enum_methods (input logic clk, rst, input logic up, output logic [2:0] y, output logic at_end);
  typedef enum logic [2:0] {A = 3'd1, B = 3'd2, C = 3'd5, D = 3'd7} step_t;
  step_t s;
  always_ff @(posedge clk)
    if (rst) s <= s.first;
    else if (up) s <= s.next();
    else s <= s.prev();
  assign y = s;
  assign at_end = s == s.last;
endmodule

// verilate: steps of several members, and their number
module enum_steps (input logic [1:0] a, output logic [1:0] x, y, output logic [3:0] n);
  typedef enum logic [1:0] {P, Q, R, S} quad_t;
  quad_t q;
  assign q = quad_t'(a);
  assign x = q.next(2);
  assign y = q.prev(3);
  assign n = q.num();
endmodule

// verilate: nested members written one by one by non-blocking assignments
module nested_nonblocking (input logic clk, input logic [3:0] a, b, output logic [9:0] y);
  typedef struct packed { logic [1:0] hi; logic [2:0] lo; } half_t;
  typedef struct packed { half_t left; half_t right; } whole_t;
  whole_t w;
  always_ff @(posedge clk) begin
    w.left.hi <= a[1:0];
    w.left.lo <= b[2:0];
    w.right.lo[0] <= a[3];
    w.right.hi <= b[3:2];
    w.right.lo[2:1] <= a[2:1];
  end
  assign y = w;
endmodule

// verilate: structures in generate blocks, seen from outside
module generated_structs (input logic [7:0] a, output logic [7:0] y);
  typedef struct packed { logic [1:0] p; logic [1:0] q; } pair_t;
  for (genvar i = 0; i < 2; i++) begin : lane
    pair_t t;
    assign t = a[4 * i +: 4];
  end
  assign y = {lane[0].t.p, lane[1].t.q, lane[1].t.p, lane[0].t.q};
endmodule
