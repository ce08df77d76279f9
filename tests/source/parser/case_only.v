// Names that differ in case alone.
// run: --option HDL_MESSAGE_LEVEL=HIGH
module case_only(input data, input Data, output q); // expect: information VERI-2052 10281 "objects \"Data\" and \"data\" differ only in case" ; information VERI-2057 10797 "data is declared here" ; information VERI-2057 10797 "Data is declared here"
  wire DATA = data & Data; // expect: information VERI-2052 10281 "objects \"DATA\" and \"Data\" differ only in case" ; information VERI-2052 10281 "objects \"DATA\" and \"data\" differ only in case"
  assign q = DATA;
endmodule
