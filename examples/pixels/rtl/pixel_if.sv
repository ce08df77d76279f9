// A stream of pixels: a beat is handed over in a cycle with valid and ready.
interface pixel_if;

  pixel_pkg::beat_t beat;
  logic             valid;
  logic             ready;

  modport source  (output beat, output valid, input ready);
  modport sink    (input beat, input valid, output ready);
  modport monitor (input beat, input valid, input ready);

endinterface
