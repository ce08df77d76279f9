# An image pipeline with signed arithmetic, in SystemVerilog: packages, structures, enumerations and interfaces
rtl/pixel_pkg.sv
rtl/pixel_if.sv
rtl/kernel3x3.sv
rtl/median9.sv
rtl/matrix3x3.sv
rtl/fir5.sv
rtl/pixel_window.sv
rtl/pixel_filter.sv
rtl/pixel_colour.sv
rtl/pixel_gamma.sv
rtl/pixel_scaler.sv
rtl/pixel_stats.sv
rtl/pixel_skid.sv
rtl/pixel_regs.sv
rtl/pixel_pipe.sv
