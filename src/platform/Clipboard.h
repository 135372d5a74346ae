// The desktop clipboard as plain text.
#pragma once

#include "platform/Types.h"

namespace sx {

/// The clipboard of the desktop, read and written as text. A failure of the
/// desktop's clipboard is not hidden: reading what is not text gives empty.
class TClipboard {
public:
    String AsText() const;
    void SetAsText(const String& Value);
    /// True when the clipboard holds text that a paste could take.
    bool HasText() const;
    void Clear();
};

/// The one clipboard of the application.
TClipboard& Clipboard();

}  // namespace sx
