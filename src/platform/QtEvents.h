// The Qt side of the windowed controls: the event filter that turns a
// widget's Qt events into its control's messages and handler calls, and the
// widget of a custom-drawn control.
#pragma once

class QObject;
class QWidget;

namespace sx {

class TWinControl;
class TCustomControl;

/// The object that filters the events of the control's widget and receives
/// the messages posted to the control; the control owns it.
QObject* NewWidgetBridge(TWinControl* control);
/// The widget of a custom-drawn control: it paints through the control, and
/// when Qt destroys it from outside, it frees the control.
QWidget* NewControlWidget(TCustomControl* control);
/// The control is being freed by its owner: its widget no longer frees it.
void ReleaseControlWidget(QWidget* widget);

}  // namespace sx
