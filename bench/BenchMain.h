#ifndef BENCHMAIN_H
#define BENCHMAIN_H

// Runs the registered benchmarks with a QApplication alive, on Qt's offscreen
// platform unless another is asked for.
int RunBenchmarks(int argc, char** argv);

#endif
