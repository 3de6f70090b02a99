// Result codes: 0 is success, everything negative an error. A plain int32_t travels; these are its names.
#pragma once

#include <cstdint>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

inline constexpr int32_t kErr_NoErr = 0;
inline constexpr int32_t kErr_Generic = -1; // also: a chunk identifier that nothing answers to
inline constexpr int32_t kErr_ControlIndexOutOfRange = -19;

inline constexpr int32_t kErr_FileNotFound = -1002;
inline constexpr int32_t kErr_FileAlreadyExists = -1003;
inline constexpr int32_t kErr_ZipEntryNotReadable = -1011; // missing, empty or damaged
inline constexpr int32_t kErr_UnknownPositionMode = -1017;
inline constexpr int32_t kErr_PathNormalisationFailed = -1024;
inline constexpr int32_t kErr_InvalidFileRef = -1026; // the reference of no open file

// What the system says of files and programs.
inline constexpr int32_t kErr_BadExecutableFormat = -2012;
inline constexpr int32_t kErr_InvalidHandle = -2013; // not open, or not open for this
inline constexpr int32_t kErr_SharingViolation = -2014;

inline constexpr int32_t kErr_AllocationFailed = -4001;
inline constexpr int32_t kErr_NullArgument = -4003;
inline constexpr int32_t kErr_NotEnoughMemory = -4009; // the system's, where -4001 is our own

inline constexpr int32_t kErr_WrongRecordVersion = -5017;
inline constexpr int32_t kErr_EmptyChunk = -5023;

// Descriptions, presets and sessions: text of ours that does not read as it should.
inline constexpr int32_t kErr_MalformedText = -6001;  // not well-formed, or a document type or entity in it
inline constexpr int32_t kErr_LimitExceeded = -6002;  // deeper, longer or larger than the reader's stated limits
inline constexpr int32_t kErr_BadDescription = -6003; // well-formed, yet something in it has no meaning

inline constexpr int32_t kErr_MalformedStream = -6101; // a graphic stream whose records do not hold together

inline constexpr int32_t kErr_NoSuchChunkIndex = -7971;

} // namespace kvKorvoV12_9_0_320
