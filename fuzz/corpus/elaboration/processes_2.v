1module case_reverse (input [3:0] req, input en, output reg [3:0] grant);
    always @(req or en) begin
        grant = 4'b0;
        case (1'b1)
            req[0] & en: grant[0] = 1'b1;
            req[1]: grant[1] = 1'b1;
            req[2], req[3]: grant[3:2] = req[3:2];
        endcase
    end
endmodule
