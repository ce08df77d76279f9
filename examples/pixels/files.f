# Blocks of an image pipeline with signed arithmetic, in SystemVerilog
rtl/kernel3x3.sv
rtl/median9.sv
rtl/matrix3x3.sv
rtl/fir5.sv
