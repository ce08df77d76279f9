// Processes that are no register, latch or tristate buffer. Behind "//!" stands what is said of the line.

// The signal changes at both edges of a clock.
module both_edges (input clk, d, output reg q);
    always @(posedge clk or negedge clk) //! error: event control statement tests for multiple distinct edges on clk
        q <= d;
endmodule

// The signal depends on two clocks, as no level tells them apart.
module two_clocks (input clk, c, d, output reg q);
    always @(posedge clk or posedge c)
        q <= d; //! warning: no register inferred for signal assignment in edge-controlled always block
endmodule

// The level of the reset is not that of its edge.
module wrong_level (input clk, rst, d, output reg q);
    always @(posedge clk or posedge rst)
        if (!rst) q <= 0; //! warning: if-condition does not match any sensitivity list edge
        else q <= d;
endmodule

// Two clocks in one process, each with an edge of its own.
module three_edges (input clk, c, rst, d, output reg q);
    always @(posedge clk or posedge c or posedge rst)
        if (rst) q <= 0;
        else q <= d; //! warning: no register inferred for signal assignment in edge-controlled always block
endmodule

// Two processes assign the same register.
module two_processes (input clk, c, d, e, output reg q);
    always @(posedge clk) q <= d; //! error: another driver from here
    always @(posedge c) q <= e; //! error: net q is constantly driven from multiple places
endmodule

// A second event control.
module two_events (input clk, d, output reg q);
    always @(posedge clk) begin
        q <= d;
        @(posedge clk) q <= ~d; //! error: multiple event control statements not supported for synthesis
    end
endmodule

// No event control.
module no_event (input clk, d, output reg q);
    initial @(posedge clk) q <= d; //! warning: initial value of q is not constant
endmodule
