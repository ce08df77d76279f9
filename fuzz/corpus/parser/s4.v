1config cfg; design work.all; default liblist work lib2; instance all.u1 use work.sub; cell x.y liblist a;
  instance all.u1.u2 use z:config; endconfig
