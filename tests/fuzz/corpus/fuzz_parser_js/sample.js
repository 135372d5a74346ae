/* Order form script: totals, checks and the handlers of the form's buttons.
   The host finds the handlers by name with MethodLineNr. */
var TAX_RATE = 0.2;
var lineCount = 0;
var orderTotal = 0;

function resetOrder()
{
  lineCount = 0;
  orderTotal = 0;
  StatusLabel.Caption = "No lines yet";
}

function lineTotal(quantity, price)
{
  if (quantity <= 0 || price < 0) {
    return 0;   // nothing to add
  }
  return quantity * price;
}

function AddButton_OnClick(Sender)
{
  var amount = lineTotal(QuantityEdit.Value, PriceEdit.Value);
  if (amount == 0) {
    alert("Please enter a quantity above 0");
    return;
  }
  lineCount = lineCount + 1;
  orderTotal = orderTotal + amount;
  StatusLabel.Caption = lineCount + " lines, total " + (orderTotal * (1 + TAX_RATE)).toFixed(2);
} // AddButton_OnClick

function ClearButton_OnQuery(Sender)
{
  /* ask before throwing
     the lines away */
  return confirm("Clear all " + lineCount + " lines?");
} // ClearButton_OnQuery

function showLines()
{
  for (var i = 1; i <= lineCount; i++) {
    LogList.Add("Line " + i + " of " + lineCount);
  }
  switch (lineCount) {
    case 0: LogList.Add("empty order"); break;
    default: LogList.Add("mask: " + $FF00);
  }
}

resetOrder();
