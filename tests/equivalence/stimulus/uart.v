// Stimulus of the UART: the divider stays small, bytes are written and read, and the line is looped back with glitches.
reg [3:0] pick;

task stimulus;
  begin
    rst = cycle < 3;
    pick = $urandom(seed);
    sel = cycle > 3 && pick < 10;
    write = $urandom(seed);
    wdata = $urandom(seed);
    case ($urandom(seed) % 64)
      0: begin addr = 8; wdata[6:5] = 2'b11; end
      1: begin addr = 12; wdata[15:1] = 0; end
      2, 3, 4, 5: addr = 4;
      default: begin addr = (cycle % 4000 < 2000) ? 0 : 4; write = (cycle % 600) < 20; end
    endcase
    if (!write) addr = {pick[1:0], 2'b00};
    rxd = ($urandom(seed) % 500 == 0) ? ~txd : txd;
    if (cycle < 3) rxd = 1;
  end
endtask
