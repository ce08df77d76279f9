// Nets with more than one driver.
// run each: --std=vlog2001
module two_gates(input a, b, output y);
  assign y = a; // expect: error VDB-1001 10029 "Constant driver at drivers.v(4)"
  assign y = b; // expect: error VDB-1000 10028 "Can't resolve multiple constant drivers for net \"y\" at drivers.v(5)"
endmodule
module three_gates(input a, b, c, output y);
  assign y = a; // expect: error VDB-1001 10029 "Constant driver at drivers.v(8)"
  assign y = b; // expect: error VDB-1000 10028 "Can't resolve multiple constant drivers for net \"y\" at drivers.v(9)"
  assign y = c;
endmodule
module constants(input a, output y); // expect: error VDB-1000 10028 "Can't resolve multiple constant drivers for net \"y\" at drivers.v(12)" ; error VDB-1001 10029 "Constant driver at drivers.v(12)"
  assign y = 1'b0;
  assign y = 1'b1;
endmodule
module same_constants(input a, output y);
  assign y = 1'b1;
  assign y = 1'b1;
endmodule
module constant_and_gate(input a, output y); // expect: error VDB-1000 10028 "Can't resolve multiple constant drivers for net \"y\" at drivers.v(20)"
  assign y = a; // expect: error VDB-1001 10029 "Constant driver at drivers.v(21)"
  assign y = 1'b1;
endmodule
module two_processes(input a, b, c, output reg y);
  always @(posedge a) y <= b; // expect: error VDB-1001 10029 "Constant driver at drivers.v(25)"
  always @(posedge c) y <= ~b; // expect: error VDB-1000 10028 "Can't resolve multiple constant drivers for net \"y\" at drivers.v(26)"
endmodule
module tristates(input a, b, e, output y);
  assign y = e ? a : 1'bz;
  assign y = e ? 1'bz : b;
endmodule
module tristate_and_gate(input a, b, e, output y);
  assign y = e ? a : 1'bz;
  assign y = b;
endmodule
module pulled(input a, e, output y);
  pullup (y); // expect: error 10687 "can't synthesize pullup or pulldown primitive"
  assign y = e ? a : 1'bz;
endmodule
module two_pulls(input a, e, output y);
  pullup (y); // expect: error 10687 "can't synthesize pullup or pulldown primitive"
  pulldown (y); // expect: error 10687 "can't synthesize pullup or pulldown primitive"
  assign y = e ? a : 1'bz;
endmodule
module pulled_gate(input a, output y);
  pullup (y); // expect: error 10687 "can't synthesize pullup or pulldown primitive"
  assign y = a;
endmodule
module leaf(input a, output y);
  assign y = a;
endmodule
module instances(input a, b, output y);
  leaf u(a, y);
  leaf v(b, y);
endmodule
module instance_and_gate(input a, b, output y);
  leaf u(a, y); // expect: error VDB-2008 10667 "Output port \"y\" on instance \"u\" at drivers.v(57) is also driven by \"y\""
  assign y = b;
endmodule
module into_input(input a, b, output y);
  leaf u(b, a); // expect: error VERI-2012 10655 "cannot assign to input port \"a\""
  assign y = a;
endmodule
module wired(input a, b, output wand y, output wor z);
  assign y = a;
  assign y = b;
  assign z = a;
  assign z = b;
endmodule
