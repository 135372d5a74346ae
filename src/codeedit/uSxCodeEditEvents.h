// The published events of the code edit control and of the language parsers,
// for hosts that ask for an event's signature through GetMethodDescription.
#pragma once

namespace sx::uSxCodeEditEvents {

/// Publishes the events of TWinControl (OnEnter, OnExit), TSxCodeEdit
/// (OnChange, OnCursorChange, OnParserLineChange) and TSxLangParser
/// (OnPaintInfo, OnGetNewBuffer) in the type information tables.
void RegisterCodeEditEvents();
/// Removes what RegisterCodeEditEvents added.
void UnRegisterCodeEditEvents();

}  // namespace sx::uSxCodeEditEvents
