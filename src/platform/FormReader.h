// Reading a form definition: a Qt Designer file carried as a resource of
// the library, whose widgets name the framework's control classes.
#pragma once

#include "platform/Types.h"

class QIODevice;

namespace sx {

class TForm;

/// Reads the form definition ":/forms/<ResourceName>.ui" into Form: the
/// form's own properties, then its controls, each created with the form as
/// owner, named and placed in its parent as the file says. Every component
/// read gets Loaded at the end. Raises EReadError when the resource is
/// missing or the file holds what the reader does not know.
void ReadComponentRes(TForm& Form, const String& ResourceName);

/// The same from any device; Source names it in error messages.
void ReadForm(TForm& Form, QIODevice& Device, const String& Source);

}  // namespace sx
