1package p;
  typedef logic [7:0] byte_t;
  typedef enum logic [1:0] {IDLE, RUN = 2'd2, STOP} state_t;
  typedef struct packed { logic valid; byte_t data; state_t [1:0] s; } pkt_t;
  typedef union packed { logic [7:0] a; byte_t b; } u_t;
  parameter int WIDTH = 8; localparam logic [3:0] C = 4'hA;
  function automatic int add(int a, b); return a + b; endfunction
  function void nothing(); endfunction : nothing
endpackage : p
