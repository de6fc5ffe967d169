#include "batch/Console.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int MaxProgressWidth = 78;
bool g_progressShown = false;

void Write(FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

} // namespace

void Console::Print(const QString& line) { Write(stdout, line + QLatin1Char('\n')); }

void Console::Complain(const QString& text)
{
    ClearProgress();
    Write(stderr, QStringLiteral("adjust: %1\n").arg(text));
}

void Console::ShowProgress(const QString& text)
{
    static const bool isTerminal = ::isatty(STDERR_FILENO) != 0;
    if (!isTerminal)
        return;
    ClearProgress();
    Write(stderr, text.left(MaxProgressWidth));
    g_progressShown = true;
}

void Console::ClearProgress()
{
    if (g_progressShown)
        Write(stderr, QStringLiteral("\r\x1b[K")); // to the line's start; erase it
    g_progressShown = false;
}

bool Console::Flush() { return std::fflush(stdout) == 0 && std::ferror(stdout) == 0; }
