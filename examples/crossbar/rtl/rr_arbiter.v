// Round-robin arbiter: the requester behind the last one served is looked at first.
module rr_arbiter #(
    parameter N = 4
) (
    input  wire         clk,
    input  wire         rst_n,
    input  wire [N-1:0] request,
    input  wire         advance,
    output reg  [N-1:0] grant
);

    reg [N-1:0] last;           // one-hot: who was served last

    // Requests below the last one come first in the upper half of a doubled vector.
    wire [N-1:0]   below  = (last - 1'b1) | last;
    wire [2*N-1:0] doubled = {request, request & ~below};
    reg  [2*N-1:0] first;

    integer i;
    reg     found;

    always @* begin
        first = {2*N{1'b0}};
        found = 1'b0;
        for (i = 0; i < 2*N; i = i + 1)
            if (doubled[i] && !found) begin
                first[i] = 1'b1;
                found    = 1'b1;
            end
        grant = first[2*N-1:N] | first[N-1:0];
    end

    always @(posedge clk or negedge rst_n)
        if (!rst_n)
            last <= {1'b1, {(N-1){1'b0}}};
        else if (advance && |grant)
            last <= grant;

endmodule
