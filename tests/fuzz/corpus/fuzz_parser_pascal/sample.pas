unit Shapes;

{ A small unit to show the colours of the editor:
  keywords, strings, numbers and comments that
  span several lines. }

interface

uses
  Classes, SysUtils;

type
  TShape = class(TObject)
  private
    FName: string;
    FSides: Integer;
  public
    constructor Create(const AName: string; ASides: Integer);
    function Describe: string; virtual;
    property Name: string read FName;
  end;

implementation

(* The constructor stores the name
   and the number of sides. *)
constructor TShape.Create(const AName: string; ASides: Integer);
begin
  inherited Create;
  FName := AName;
  FSides := ASides;
end;

function TShape.Describe: string;
var
  Area: Double;
begin
  Area := 12.5 * FSides; // a made-up measure
  if FSides > 2 then
    Result := Format('%s has %d sides', [FName, FSides])
  else
    Result := 'not a polygon: ' + FName + #13#10;
  try
    Area := Area / $10;
  finally
    Area := 0;
  end;
end;

end.
