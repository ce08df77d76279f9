// Multi-cycle control: fetch, decode, execute, memory, write-back and trap entry.
module rv32_control (
    input  wire clk,
    input  wire rst_n,

    input  wire imem_ready,
    input  wire dmem_ready,
    input  wire needs_memory,
    input  wire exception,      // valid in execute
    input  wire irq_pending,    // looked at between instructions

    output wire imem_valid,
    output wire dmem_valid,
    output wire latch_instr,
    output wire latch_operands,
    output wire latch_result,
    output wire latch_load,
    output wire commit,
    output wire take_trap,
    output reg  trap_is_irq
);

    localparam [2:0] S_FETCH     = 3'd0,
                     S_DECODE    = 3'd1,
                     S_EXECUTE   = 3'd2,
                     S_MEMORY    = 3'd3,
                     S_WRITEBACK = 3'd4,
                     S_TRAP      = 3'd5;

    reg [2:0] state, state_next;
    reg       irq_next;

    always @* begin
        state_next = state;
        irq_next   = 1'b0;
        case (state)
            S_FETCH:
                if (irq_pending) begin
                    state_next = S_TRAP;
                    irq_next   = 1'b1;
                end else if (imem_ready)
                    state_next = S_DECODE;

            S_DECODE:
                state_next = S_EXECUTE;

            S_EXECUTE:
                if (exception)         state_next = S_TRAP;
                else if (needs_memory) state_next = S_MEMORY;
                else                   state_next = S_WRITEBACK;

            S_MEMORY:
                if (dmem_ready)
                    state_next = S_WRITEBACK;

            S_WRITEBACK,
            S_TRAP:
                state_next = S_FETCH;

            default:
                state_next = S_FETCH;
        endcase
    end

    always @(posedge clk or negedge rst_n)
        if (!rst_n) begin
            state       <= S_FETCH;
            trap_is_irq <= 1'b0;
        end else begin
            state       <= state_next;
            trap_is_irq <= irq_next;
        end

    assign imem_valid     = (state == S_FETCH) & ~irq_pending;
    assign dmem_valid     = (state == S_MEMORY);
    assign latch_instr    = imem_valid & imem_ready;
    assign latch_operands = (state == S_DECODE);
    assign latch_result   = (state == S_EXECUTE);
    assign latch_load     = dmem_valid & dmem_ready;
    assign commit         = (state == S_WRITEBACK);
    assign take_trap      = (state == S_TRAP);

endmodule
