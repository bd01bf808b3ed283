/* METIS includes this header, which Windows lacks, but uses nothing of it there. */
