-- The demo editor's sample database: scripts in several languages, one per
-- row. sxedit --db runs this file once to make the database it opens.
CREATE TABLE scripts (
  id INTEGER PRIMARY KEY,
  name VARCHAR(60) NOT NULL UNIQUE,
  language VARCHAR(20) NOT NULL,
  source TEXT NOT NULL DEFAULT '' CHECK (source NOT LIKE '%FORBIDDEN%')
);

INSERT INTO scripts (name, language, source) VALUES ('Shapes unit', 'Pascal',
'unit Shapes;

{ Areas of a few plane shapes }

interface

type
  TShape = class
  public
    function Area: Double; virtual; abstract;
  end;

  TCircle = class(TShape)
  private
    FRadius: Double;
  public
    constructor Create(ARadius: Double);
    function Area: Double; override;
  end;

implementation

constructor TCircle.Create(ARadius: Double);
begin
  FRadius := ARadius;
end;

function TCircle.Area: Double;
begin
  Result := Pi * Sqr(FRadius); // pi r squared
end;

end.
');

INSERT INTO scripts (name, language, source) VALUES ('Large orders', 'SQL',
'-- Customers with orders above a limit
SELECT c.name, SUM(o.total) AS ordered
  FROM customers c
  JOIN orders o ON o.customer_id = c.id
 WHERE o.placed >= :since
 GROUP BY c.name
HAVING SUM(o.total) > 1000
 ORDER BY ordered DESC;

/* Mark them for the newsletter */
UPDATE customers SET newsletter = 1
 WHERE id IN (SELECT customer_id FROM orders WHERE total > 1000);
');

INSERT INTO scripts (name, language, source) VALUES ('Order form', 'VB',
''' Order form: totals and the handler of the Add button
Option Explicit

Const TaxRate = 0.2
Dim orderTotal

Function LineTotal(ByVal quantity, ByVal price)
  If quantity <= 0 Then
    LineTotal = 0
    Exit Function
  End If
  LineTotal = quantity * price
End Function

Sub AddButton_OnClick(Sender)
  orderTotal = orderTotal + LineTotal(QuantityEdit.Value, PriceEdit.Value)
  StatusLabel.Caption = "Total " & FormatNumber(orderTotal * (1 + TaxRate), 2)
End Sub
');

INSERT INTO scripts (name, language, source) VALUES ('Form checks', 'JS',
'/* Checks of the order form before it is sent */
var MAX_QUANTITY = 99;

function checkQuantity(value)
{
  if (isNaN(value) || value < 1) {
    return "Please enter a quantity";
  }
  return value > MAX_QUANTITY ? "At most " + MAX_QUANTITY : "";
}

function SendButton_OnClick(Sender)
{
  var problem = checkQuantity(QuantityEdit.Value);
  if (problem != "") {
    alert(problem);   // stays on the form
    return;
  }
  OrderForm.Submit();
}
');

INSERT INTO scripts (name, language, source) VALUES ('Shape catalogue', 'XML',
'<?xml version="1.0" encoding="UTF-8"?>
<!-- A catalogue of shapes -->
<catalogue xmlns="urn:example:shapes" version="2">
  <shape id="tri" sides="3">
    <name>Triangle</name>
    <note><![CDATA[Angles add up to 180 < 360]]></note>
  </shape>
  <shape id="sq" sides="4">
    <name>Square</name>
  </shape>
</catalogue>
');
