// run: --lint
module reserved(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"reserved\" at reserved.v(2) due to previous errors"
  wire always; // expect: error VERI-1137 10170 "near text \"always\";  expecting an identifier (\"always\" is a reserved keyword )"
  assign q = a;
endmodule
