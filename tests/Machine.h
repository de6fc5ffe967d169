#pragma once

#include <QThread>

/// For as long as it lives, the machine has so many cores for std::thread::hardware_concurrency().
///
/// The program must export its symbols (ENABLE_EXPORTS), and one of its sources includes this.
class Machine
{
public:
    explicit Machine(int cores) { s_cores = cores; }
    ~Machine() { s_cores = 0; }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    inline static int s_cores = 0; ///< 0: as many as there are
};

/// std::thread::hardware_concurrency() asks this function, which stands before the C library's own here.
extern "C" int get_nprocs() { return Machine::s_cores > 0 ? Machine::s_cores : QThread::idealThreadCount(); }
