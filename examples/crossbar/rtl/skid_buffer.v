// Register slice with full throughput: both the data and the ready path are registered.
// BYPASS makes it a plain connection.
module skid_buffer #(
    parameter WIDTH  = 8,
    parameter BYPASS = 0
) (
    input  wire             clk,
    input  wire             rst_n,
    input  wire             in_valid,
    output wire             in_ready,
    input  wire [WIDTH-1:0] in_data,
    output wire             out_valid,
    input  wire             out_ready,
    output wire [WIDTH-1:0] out_data
);

    generate
        if (BYPASS != 0) begin : g_bypass
            assign out_valid = in_valid;
            assign out_data  = in_data;
            assign in_ready  = out_ready;
        end else begin : g_buffer
            reg             main_valid, spare_valid;
            reg [WIDTH-1:0] main, spare;

            assign in_ready  = ~spare_valid;
            assign out_valid = main_valid;
            assign out_data  = main;

            always @(posedge clk or negedge rst_n)
                if (!rst_n) begin
                    main_valid  <= 1'b0;
                    spare_valid <= 1'b0;
                end else if (out_ready || !main_valid) begin
                    main_valid  <= spare_valid | in_valid;
                    spare_valid <= 1'b0;
                end else if (in_valid && in_ready)
                    spare_valid <= 1'b1;

            always @(posedge clk) begin
                if (out_ready || !main_valid)
                    main <= spare_valid ? spare : in_data;
                if (in_ready)
                    spare <= in_data;
            end
        end
    endgenerate

endmodule
