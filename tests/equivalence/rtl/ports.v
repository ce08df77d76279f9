// Ports on the way through a hierarchy: bidirectional ones, some that lead straight through, open and constant ones.

module pad(inout io, input enable, value, output seen);
  assign io = enable ? value : 1'bz;
  assign seen = io;
endmodule

// Two levels of bidirectional ports, and a driver of its own on one bit.
module pad_row(inout [3:0] io, input [2:0] enable, value, output [3:0] seen, input other);
  pad p0(.io(io[0]), .enable(enable[0]), .value(value[0]), .seen(seen[0]));
  pad p1(io[1], enable[1], value[1], seen[1]);
  pad p2(.io(io[2]), .enable(enable[2]), .value(value[2]), .seen(seen[2]));
  assign io[3] = other ? 1'b0 : 1'bz;
  assign seen[3] = io[3];
endmodule

module through(input [1:0] i, output [1:0] o, output high, low, unused);
  assign o = {i[0], i[1]};
  assign high = 1'b1;
  assign low = 1'b0;
  assign unused = ^i;
endmodule

// Only reads its bidirectional port.
module reader(inout io, output seen);
  assign seen = !io;
endmodule

module pads(inout [3:0] io, input [2:0] enable, value, input other, output [3:0] seen, output [1:0] turned,
            output [2:0] constants, output bus_seen, bus_read);
  wire [1:0] once;
  wire high, low, local_bus;
  pad_row row(io, enable, value, seen, other);
  through t0(.i({value[0], enable[0]}), .o(once), .high(high), .low(low), .unused());
  through t1(.i(once), .o(turned), .high(), .low(), .unused());
  through t2(.i({high, low}), .o(constants[1:0]), .high(), .low(), .unused(constants[2]));
  // A bus that never leaves the module.
  pad b0(.io(local_bus), .enable(enable[1]), .value(value[1]), .seen(bus_seen));
  pad b1(.io(local_bus), .enable(!enable[1]), .value(value[2]), .seen());
  reader r(.io(local_bus), .seen(bus_read));
endmodule

// A state machine and a memory that occur twice, with controls through ports.
module machine(input clk, rst, go, output reg [1:0] state);
  always @(posedge clk or posedge rst)
    if (rst) state <= 2'd0;
    else
      case (state)
        2'd0: if (go) state <= 2'd1;
        2'd1: state <= go ? 2'd2 : 2'd0;
        2'd2: if (!go) state <= 2'd3;
        default: state <= 2'd0;
      endcase
endmodule

module pair(input clk, rst, input [1:0] go, output [3:0] state);
  machine a(clk, rst, go[0], state[1:0]);
  machine b(.clk(clk), .rst(rst), .go(go[1]), .state(state[3:2]));
endmodule

module machines(input clk, rst, input [3:0] go, output [7:0] state);
  pair p(clk, rst, go[1:0], state[3:0]);
  pair q(clk, rst, go[3:2], state[7:4]);
endmodule
