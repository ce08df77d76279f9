// Stimulus of latches and of registers with several asynchronous terms, under which a source that acts on edges shows
// what levels make: data and controls change in turn, terms rise at any time and all fall at once.
reg [7:0] pick;

task stimulus;
  begin
    pick = $urandom(seed);
    if (cycle < 2 || pick[7:6] == 0) begin
      rst = cycle < 2;
      set = 0;
      e2 = 0;
      en = 0;
    end else if (cycle % 2) begin
      d = $urandom(seed);
      if (!e2) e = $urandom(seed);
    end else begin
      en = $urandom(seed);
      sel = $urandom(seed);
      rst = rst | (pick[2:0] == 0);
      set = set | (pick[5:3] == 0);
      e2 = e2 | (pick[5:3] == 1);
    end
  end
endtask
