# A DMA engine with four channels, chained descriptors and one AXI-like master
-I rtl
rtl/dma_fifo.v
rtl/dma_arbiter.v
rtl/dma_splitter.v
rtl/dma_reader.v
rtl/dma_aligner.v
rtl/dma_writer.v
rtl/dma_channel.v
rtl/dma_regs.v
rtl/dma.v
