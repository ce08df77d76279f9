1module sub; endmodule
