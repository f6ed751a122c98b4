#pragma once

#include "MessageTable.h"

namespace axmavlink {
/// The C++ of AxMavMessages.h and AxMavMessages.cpp.
QByteArray HeaderOf(const std::vector<Message>& messages);
QByteArray SourceOf(const std::vector<Message>& messages);
} // namespace axmavlink
