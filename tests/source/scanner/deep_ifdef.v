// More than fifty levels of conditionals.
// run: --lint
`ifndef M0
`ifndef M1
`ifndef M2
`ifndef M3
`ifndef M4
`ifndef M5
`ifndef M6
`ifndef M7
`ifndef M8
`ifndef M9
`ifndef M10
`ifndef M11
`ifndef M12
`ifndef M13
`ifndef M14
`ifndef M15
`ifndef M16
`ifndef M17
`ifndef M18
`ifndef M19
`ifndef M20
`ifndef M21
`ifndef M22
`ifndef M23
`ifndef M24
`ifndef M25
`ifndef M26
`ifndef M27
`ifndef M28
`ifndef M29
`ifndef M30
`ifndef M31
`ifndef M32
`ifndef M33
`ifndef M34
`ifndef M35
`ifndef M36
`ifndef M37
`ifndef M38
`ifndef M39
`ifndef M40
`ifndef M41
`ifndef M42
`ifndef M43
`ifndef M44
`ifndef M45
`ifndef M46
`ifndef M47
`ifndef M48
`ifndef M49
`ifndef M50 // expect: error VERI-1005 10047 "'ifdef/'ifndef block exceeds nesting limit of 50"
`ifndef M51 // expect: error VERI-1005 10047 "'ifdef/'ifndef block exceeds nesting limit of 50"
module deep_ifdef(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"deep_ifdef\" at deep_ifdef.v(55) due to previous errors"
  assign q = a;
endmodule
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
`endif
