' Order form script: totals, checks and the handlers of the form's buttons.
Option Explicit

Const TaxRate = 0.2
Dim lineCount, orderTotal

Sub ResetOrder()
  lineCount = 0
  orderTotal = 0
  StatusLabel.Caption = "No lines yet"
End Sub

Function LineTotal(ByVal quantity, ByVal price)
  If quantity <= 0 Then
    LineTotal = 0
    Exit Function
  End If
  LineTotal = quantity * price
End Function

Sub AddButton_OnClick(Sender)
  Dim amount
  amount = LineTotal(QuantityEdit.Value, PriceEdit.Value)
  If amount = 0 Then
    MsgBox "Please enter a quantity above 0", 48, "Order"
    Exit Sub
  End If
  lineCount = lineCount + 1
  orderTotal = orderTotal + amount
  StatusLabel.Caption = lineCount & " lines, total " & FormatNumber(orderTotal * (1 + TaxRate), 2)
End Sub

Function ClearButton_OnQuery(Sender)
  REM ask before throwing the lines away
  ClearButton_OnQuery = (MsgBox("Clear all " & lineCount & " lines?", 36) = 6)
End Function

Sub ShowLines()
  Dim i
  For i = 1 To lineCount
    LogList.Add "Line " & i & " of " & lineCount
  Next
  Select Case lineCount
    Case 0: LogList.Add "empty order"
    Case Else: LogList.Add "mask: " & $FF00
  End Select
End Sub

ResetOrder
