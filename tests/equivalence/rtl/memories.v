// Memories that become RAMs, and some that cannot.

module ram_sync(input clk, we, input [3:0] wa, ra, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin
    if (we) mem[wa] <= d;
    q <= mem[ra];
  end
endmodule

module ram_two_reads(input clk, we, input [2:0] wa, ra, rb, input [5:0] d, output [5:0] qa, output [2:0] qb);
  reg [5:0] mem [0:7];
  always @(posedge clk) if (we) mem[wa] <= d;
  assign qa = mem[ra];
  assign qb = mem[rb][4:2];
endmodule

module ram_bytes(input clk, input [3:0] be, input [2:0] a, input [31:0] d, output reg [31:0] q);
  reg [31:0] mem [0:7];
  integer i;
  always @(posedge clk) begin
    for (i = 0; i < 4; i = i + 1)
      if (be[i]) mem[a][8*i +: 8] <= d[8*i +: 8];
    q <= mem[a];
  end
endmodule

module ram_halves(input clk, lo, hi, en, input [2:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk)
    if (en) begin
      if (lo) mem[a][3:0] <= d[3:0];
      if (hi) mem[a][7:4] <= d[7:4];
    end
  assign q = mem[b];
endmodule

module ram_overlay(input clk, c, input [2:0] a, b, input [7:0] d, e, output [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk) begin
    mem[a] <= d;
    if (c) mem[a][3:0] <= e[3:0];
  end
  assign q = mem[b];
endmodule

module ram_branches(input clk, s, t, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin
    if (s) begin
      if (we) mem[a] <= d;
      q <= mem[b];
    end else if (t) begin
      mem[b] <= ~d;
      q <= mem[a] + 1;
    end
  end
endmodule

module ram_cases(input clk, input [1:0] op, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk)
    case (op)
      0: mem[a] <= d;
      1: mem[b] <= d + 8'd3;
      2: q <= mem[a];
      default: q <= mem[b];
    endcase
endmodule

module ram_dual(input clk, wea, web, input [2:0] a, b, input [7:0] da, db, output reg [7:0] qa, qb);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin
    if (wea) mem[{1'b0, a}] <= da;
    qa <= mem[{web, a}];
  end
  always @(posedge clk) begin
    if (web) mem[{1'b1, b}] <= db;
    qb <= mem[{wea, b}];
  end
endmodule

module ram_blocking(input clk, we, input [2:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk) begin
    if (we) mem[a] = d;
    q <= mem[b];
  end
endmodule

module ram_reset(input clk, rst, we, input [2:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk or posedge rst)
    if (rst) begin
      q <= 0;
    end else begin
      if (we) mem[a] <= d;
      q <= mem[b];
    end
endmodule

module ram_offset(input clk, we, input [4:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [5:20];
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule

module ram_down(input clk, we, input [5:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [57:0];
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule

module ram_signed(input clk, we, input signed [3:0] a, b, input signed [3:0] d, output reg signed [7:0] q);
  reg signed [3:0] mem [-4:3];
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule

module ram_bits(input clk, we, input [2:0] a, b, i, j, input d, output reg q);
  reg [7:0] mem [0:7];
  always @(posedge clk) begin
    if (we) mem[a][i] <= d;
    q <= mem[b][j];
  end
endmodule

module ram_modify(input clk, we, input [2:0] a, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk) if (we) mem[a] <= mem[a] ^ d;
  assign q = mem[a];
  integer i;
  initial for (i = 0; i < 8; i = i + 1) mem[i] = 17 * i + 3;
endmodule

module ram_initial(input clk, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  integer i;
  initial begin
    for (i = 0; i < 12; i = i + 1) mem[i] = 37 * i;
    mem[3][7:4] = 4'h9;
  end
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule

module rom_initial(input clk, input [3:0] a, b, output reg [7:0] q, output [7:0] p);
  reg [7:0] mem [0:15];
  integer i;
  initial for (i = 0; i < 16; i = i + 1) mem[i] = 91 * i + 5;
  always @(posedge clk) q <= mem[a];
  assign p = mem[b];
endmodule

module ram_generated(input clk, input [1:0] we, input [2:0] a, b, input [7:0] d, output [15:0] q);
  genvar g;
  generate
    for (g = 0; g < 2; g = g + 1) begin : bank
      reg [7:0] mem [0:7];
      always @(posedge clk) if (we[g]) mem[a] <= d + g;
      assign q[8*g +: 8] = mem[b];
    end
  endgenerate
endmodule

module ram_concat(input clk, we, input [3:0] a, b, input [11:0] d, output reg [11:0] q);
  reg [7:0] mem [0:15]; reg [3:0] x;
  always @(posedge clk) begin if (we) {mem[a], x} <= d; q <= {x, mem[b]}; end
endmodule

module ram_negate(input [7:0] i, output [7:0] o); assign o = ~i; endmodule

module ram_port(input clk, we, input [3:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) if (we) mem[a] <= d;
  ram_negate s(.i(mem[b]), .o(q));
endmodule

module ram_block(input clk, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  always @(posedge clk) begin : blk
    reg [7:0] mem [0:15];
    if (we) mem[a] = d;
    q <= mem[b];
  end
endmodule

module ram_question(input clk, we, s, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin if (we) mem[a] <= d; q <= s ? mem[a] : mem[b]; end
endmodule

module ram_while(input clk, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15]; integer i;
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q = 0;
    for (i = 0; i < 8; i = i + 1) q = q + mem[b][i];
  end
endmodule

module ram_disable(input clk, we, s, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin : outer
    q <= mem[b];
    if (s) disable outer;
    if (we) mem[a] <= d;
  end
endmodule

module ram_index(input clk, we, input [3:0] a, b, input [3:0] d, output reg [3:0] q);
  reg [3:0] mem [0:15];
  always @(posedge clk) begin if (we) mem[a] <= d; q <= mem[mem[b]]; end
endmodule

module ram_twoclk(input clk, c, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) if (we) mem[a] <= d;
  always @(negedge c) q <= mem[b];
endmodule

module ram_partvar(input clk, we, input [2:0] a, b, input [1:0] l, input [7:0] d, output reg [7:0] q);
  reg [31:0] mem [0:7];
  always @(posedge clk) begin if (we) mem[a][8*l +: 8] <= d; q <= mem[b][8*l +: 8]; end
endmodule

module ram_one(input clk, we, a, b, d, output q);
  reg mem [0:1];
  always @(posedge clk) if (we) mem[a] <= d;
  assign q = mem[b];
endmodule

// No memories: cleared at once, too many reads, written without a clock, used in a function.
module regs_cleared(input clk, rst, we, input [1:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:3];
  integer i;
  always @(posedge clk)
    if (rst) for (i = 0; i < 4; i = i + 1) mem[i] <= i;
    else if (we) mem[a] <= d;
  assign q = mem[b];
endmodule

module regs_many_reads(input clk, we, input [1:0] a, b, c, e, input [7:0] d, output [7:0] q, output r);
  reg [7:0] mem [0:3];
  always @(posedge clk) if (we) mem[a] <= d;
  assign q = mem[b] ^ mem[c];
  assign r = mem[e] > mem[a];
endmodule

module regs_two_addresses(input clk, we, s, input [1:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:3];
  genvar g;
  always @(posedge clk) if (we) mem[a] <= d;
  generate
    for (g = 0; g < 2; g = g + 1) begin : half
      assign q[4*g +: 4] = mem[b + g][4*g +: 4];
    end
  endgenerate
endmodule

module regs_latched(input we, input [1:0] a, input [3:0] d, output [3:0] q);
  reg [3:0] mem [0:3];
  always @* if (we) mem[2'd1 ^ 2'd1] = d;
  assign q = mem[0];
endmodule

module regs_in_function(input clk, we, input [1:0] a, b, c, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:3];
  function [7:0] word(input [1:0] at);
    word = mem[at];
  endfunction
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= word(b) + word(c);
  end
endmodule

// Of two writes to one word the later one wins, between the ports of a memory and within one.
module ram_order(input clk, wa, wb, input [1:0] a, b, r, input [7:0] d, e, output [7:0] q);
  reg [7:0] mem [0:3];
  always @(posedge clk) begin
    if (wa) mem[a] <= d;
    if (wb) mem[b] <= e;
  end
  assign q = mem[r];
endmodule

module ram_between(input clk, wa, wb, input [1:0] a, b, r, input [7:0] d, e, output reg [7:0] q);
  reg [7:0] mem [0:3];
  always @(posedge clk) begin
    if (wa) mem[a] <= d;
    if (wb) mem[b] <= e;
    if (wa & d[0]) mem[a] <= e ^ d;
    q <= mem[r];
  end
endmodule

module ram_levelled(input clk, s, t, u, input [1:0] a, b, r, input [7:0] d, e, output [7:0] q);
  reg [7:0] mem [0:3];
  always @(posedge clk)
    if (s) begin
      mem[a] <= d;
      if (t) mem[a][3:0] <= e[3:0];
      if (u) mem[a][1:0] <= e[7:6];
    end else begin
      if (t) mem[b] <= e;
      if (u) mem[r] <= d;
    end
  assign q = mem[r];
endmodule
