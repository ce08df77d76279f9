# UART with buffers and a register interface
rtl/sync_fifo.v
rtl/uart_tx.v
rtl/uart_rx.v
rtl/uart.v
