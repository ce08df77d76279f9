// Chooses among channels that ask for the data mover: the highest of four priorities first, and within a priority in
// turn. The choice stands until the holder releases it.
module dma_arbiter #(
    parameter N = 4
) (
    input  wire           clk,
    input  wire           rst,
    input  wire [N-1:0]   request,
    input  wire [2*N-1:0] priorities,   // two bits for each channel, 3 is the highest
    input  wire           release_grant,
    output reg  [N-1:0]   grant,        // one-hot, or none
    output wire           busy
);

    reg [N-1:0] last;                   // the one that was served last, one-hot

    reg [1:0]   highest;
    reg [N-1:0] candidates;
    reg [N-1:0] after_last;
    reg [N-1:0] choice;

    integer i;

    // The priority that counts
    always @* begin
        highest = 2'd0;
        for (i = 0; i < N; i = i + 1)
            if (request[i] && priorities[2*i +: 2] > highest)
                highest = priorities[2*i +: 2];
    end

    // Those that have it
    always @* begin
        for (i = 0; i < N; i = i + 1)
            candidates[i] = request[i] & (priorities[2*i +: 2] == highest);
    end

    // The first one behind the last, or else the first of all
    wire [N-1:0] above_mask   = ~((last - 1'b1) | last);
    wire [N-1:0] above        = candidates & above_mask;
    wire [N-1:0] first_above  = above & (~above + 1'b1);
    wire [N-1:0] first_of_all = candidates & (~candidates + 1'b1);

    always @* begin
        after_last = first_above;
        choice     = |above ? after_last : first_of_all;
    end

    assign busy = |grant;

    always @(posedge clk or posedge rst)
        if (rst) begin
            grant <= 0;
            last  <= {1'b1, {N-1{1'b0}}};
        end else if (busy) begin
            if (release_grant) begin
                grant <= 0;
                last  <= grant;
            end
        end else if (|request) begin
            grant <= choice;
        end

endmodule
