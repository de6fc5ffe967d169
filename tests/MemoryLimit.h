#pragma once

#include <QByteArray>
#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

/// While it lives, the process gets no more than some 256 MiB of memory beyond what it has.
class MemoryLimit
{
public:
    MemoryLimit()
    {
        ::getrlimit(RLIMIT_AS, &m_before);
        QFile sizes(QStringLiteral("/proc/self/statm"));
        const QByteArray pages = sizes.open(QIODevice::ReadOnly) ? sizes.readAll().split(' ').first() : "0";
        rlimit tight = m_before;
        tight.rlim_cur = rlim_t(pages.toULongLong()) * rlim_t(::sysconf(_SC_PAGESIZE)) + (rlim_t(256) << 20);
        ::setrlimit(RLIMIT_AS, &tight);
    }
    ~MemoryLimit() { ::setrlimit(RLIMIT_AS, &m_before); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

private:
    rlimit m_before = {};
};
