#pragma once

/// What each adjustment's record is called in the log. Two records bear the name of another adjustment; that
/// and the line numbers kept here are fixed by the log's format.
struct YDRecordName
{
    const char* source;  ///< such as "src/YDTintWidget"
    const char* subject; ///< as in "Read tint data error."
    int writeLine = 0;   ///< 0: that of the statement, which all records share
    int readLine = 0;
};
