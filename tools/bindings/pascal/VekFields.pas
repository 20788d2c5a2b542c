// The values of a body, by their keys; what is absent is 0 or empty, as a host reads it. The body may be absent too.
unit VekFields;

{$ifdef FPC}{$mode delphi}{$warn 5093 off}{$endif}

interface

uses
  SysUtils, VekJson;

function VekHas(From: TVekValue; const Key: UnicodeString): Boolean;
/// <summary>The value itself, or nil.</summary>
function VekReadGroup(From: TVekValue; const Key: UnicodeString): TVekValue;
function VekReadList(From: TVekValue; const Key: UnicodeString): TArray<TVekValue>;
function VekReadReal(From: TVekValue; const Key: UnicodeString): Double;
function VekReadReals(From: TVekValue; const Key: UnicodeString): TArray<Double>;
function VekReadWhole(From: TVekValue; const Key: UnicodeString): Integer;
function VekReadWholes(From: TVekValue; const Key: UnicodeString): TArray<Integer>;
function VekReadShorts(From: TVekValue; const Key: UnicodeString): TArray<SmallInt>;
function VekReadFlag(From: TVekValue; const Key: UnicodeString): Boolean;
/// <summary>A text; one of 16 bits that is no sound UTF-16 comes as its codes.</summary>
function VekReadText(From: TVekValue; const Key: UnicodeString): UnicodeString;
function VekReadTexts(From: TVekValue; const Key: UnicodeString): TArray<UnicodeString>;
/// <summary>The number of a value of an enumeration.</summary>
function VekReadWord(From: TVekValue; const Key: UnicodeString; const Words: array of UnicodeString): Integer;

implementation

uses
  Math, VekNumbers;

type
  // The list of a key, by what an item of it is.
  TVekLists<T> = class
  public
    type
      TItemIn = function(Item: TVekValue): T;
    class function Read(From: TVekValue; const Key: UnicodeString; ItemIn: TItemIn): TArray<T>; static;
  end;

function VekReadGroup(From: TVekValue; const Key: UnicodeString): TVekValue;
begin
  Result := nil;
  if From <> nil then
    Result := From.Find(Key);
end;

function VekHas(From: TVekValue; const Key: UnicodeString): Boolean;
begin
  Result := VekReadGroup(From, Key) <> nil;
end;

function VekReadList(From: TVekValue; const Key: UnicodeString): TArray<TVekValue>;
begin
  From := VekReadGroup(From, Key);
  Result := nil;
  if From <> nil then
    Result := Copy(From.Items, 0, From.Count);
end;

class function TVekLists<T>.Read(From: TVekValue; const Key: UnicodeString; ItemIn: TItemIn): TArray<T>;
var
  I: Integer;
  List: TArray<TVekValue>;
begin
  List := VekReadList(From, Key);
  SetLength(Result, Length(List));
  for I := 0 to High(List) do
    Result[I] := ItemIn(List[I]);
end;

// One that is infinite or has hundreds of digits comes as a text.
function RealIn(Item: TVekValue): Double;
begin
  if Item = nil then
    Exit(0.0);
  if Pos('inf', Item.Text) > 0 then
    Result := IfThen(Item.Text[1] = '-', NegInfinity, Infinity)
  else if Pos('nan', Item.Text) > 0 then
    Result := NaN
  else
    Result := VekRealOf(Item.Text);
end;

function WholeIn(Item: TVekValue): Integer;
begin
  Result := 0;
  if Item <> nil then
    Result := StrToIntDef(VekNative(Item.Text), 0);
end;

function ShortIn(Item: TVekValue): SmallInt;
begin
  Result := SmallInt(WholeIn(Item));
end;

function TextIn(Item: TVekValue): UnicodeString;
var
  I, Code: Integer;
begin
  Result := '';
  if Item = nil then
    Exit;
  Result := Item.Text;
  for I := 0 to Item.Count - 1 do
  begin
    Code := WholeIn(Item.Items[I]) and $FFFF;
    if Code = 0 then
      Exit;
    Result := Result + WideChar(Code);
  end;
end;

function VekReadReal(From: TVekValue; const Key: UnicodeString): Double;
begin
  Result := RealIn(VekReadGroup(From, Key));
end;

function VekReadReals(From: TVekValue; const Key: UnicodeString): TArray<Double>;
begin
  Result := TVekLists<Double>.Read(From, Key, RealIn);
end;

function VekReadWhole(From: TVekValue; const Key: UnicodeString): Integer;
begin
  Result := WholeIn(VekReadGroup(From, Key));
end;

function VekReadWholes(From: TVekValue; const Key: UnicodeString): TArray<Integer>;
begin
  Result := TVekLists<Integer>.Read(From, Key, WholeIn);
end;

function VekReadShorts(From: TVekValue; const Key: UnicodeString): TArray<SmallInt>;
begin
  Result := TVekLists<SmallInt>.Read(From, Key, ShortIn);
end;

function VekReadFlag(From: TVekValue; const Key: UnicodeString): Boolean;
begin
  From := VekReadGroup(From, Key);
  Result := (From <> nil) and (From.Kind = vkTrue);
end;

function VekReadText(From: TVekValue; const Key: UnicodeString): UnicodeString;
begin
  Result := TextIn(VekReadGroup(From, Key));
end;

function VekReadTexts(From: TVekValue; const Key: UnicodeString): TArray<UnicodeString>;
begin
  Result := TVekLists<UnicodeString>.Read(From, Key, TextIn);
end;

function VekReadWord(From: TVekValue; const Key: UnicodeString; const Words: array of UnicodeString): Integer;
var
  Found: UnicodeString;
begin
  Found := VekReadText(From, Key);
  for Result := 0 to High(Words) do
    if Words[Result] = Found then
      Exit;
  Result := 0;
end;

end.
