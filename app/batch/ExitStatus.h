#pragma once

/// What the program tells its caller when it ends.
enum class ExitStatus
{
    Done = 0,       ///< all was done
    FileFailed = 1, ///< some file failed; the others are done
    WrongCall = 2,  ///< nothing was done: the call made no sense
};
