#ifndef TARKACPP_ERRORCODE_H
#define TARKACPP_ERRORCODE_H

#include <TarkaCPP/TrkTypes.h>

namespace KST {
namespace TrkAPI {

// Result codes of the library's features, the same in every backend; a
// backend adds codes of its own only for failures the others can't have.
// Callers only tell zero from non-zero; distinct codes make failures
// readable.
enum ErrorCode : TrkErrorType
{
    Success = 0,
    ErrorWrongType = -1001,
    ErrorOutOfRange = -1002,
    ErrorOffGrid = -1003,
    ErrorNotWritable = -1004,
    ErrorBufferTooSmall = -1005,
    ErrorInvalidArgument = -1006,
    ErrorNoIncrement = -1007,
    ErrorAlreadyRegistered = -1008,
    ErrorNotRegistered = -1009,
    ErrorUnavailableEntry = -1010
};

} // namespace TrkAPI
} // namespace KST

#endif
