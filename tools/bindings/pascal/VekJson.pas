// The JSON of the library, which is always well-formed, and the texts in it.
unit VekJson;

{$ifdef FPC}{$mode delphi}{$warn 5093 off}{$endif}

interface

uses
  SysUtils;

type
  TVekKind = (vkNothing, vkFalse, vkTrue, vkNumber, vkText, vkList, vkObject);

  /// <summary>A value with those in it. It owns them.</summary>
  TVekValue = class
  public
    Kind: TVekKind;
    Text: UnicodeString; // of a text or a number
    Names: TArray<UnicodeString>;
    Items: TArray<TVekValue>;
    Count: Integer;
    destructor Destroy; override;
    /// <summary>A member, or nil.</summary>
    function Find(const Name: UnicodeString): TVekValue;
    function TextOf(const Name: UnicodeString): UnicodeString;
    function WholeOf(const Name: UnicodeString; Absent: Int64 = 0): Int64;
  private
    FNext: Integer; // members are asked for in their order
    procedure Add(const Name: UnicodeString; Item: TVekValue);
  end;

function VekReadJson(const Bytes: TBytes): TVekValue;

/// <summary>The text of a message's bytes: those that are no UTF-8 are the characters U+EF80 to U+EFFF.</summary>
function VekTextOf(const Bytes: TBytes): UnicodeString;

/// <summary>The bytes that such a text stands for.</summary>
function VekBytesOf(const Text: UnicodeString): TBytes;

/// <summary>Such a text in JSON, where each character is one.</summary>
function VekUtf8(const Text: UnicodeString): TBytes;

/// <summary>A text as the run-time library has it in errors and lines: UTF-8 in Free Pascal.</summary>
function VekNative(const Text: UnicodeString): string;

implementation

const
  FirstByte = $EF80;
  LastByte = $EFFF;

// The character at a place and its size; 0 when it is unsound.
function CharacterAt(const Bytes: TBytes; At: Integer; out Size: Integer): Cardinal;
const
  Smallest: array [1 .. 4] of Cardinal = (0, $80, $800, $10000);
var
  I: Integer;
begin
  Result := Bytes[At];
  if Result < $80 then
    Size := 1
  else if Result and $E0 = $C0 then
    Size := 2
  else if Result and $F0 = $E0 then
    Size := 3
  else if Result and $F8 = $F0 then
    Size := 4
  else
    Size := 0;
  if Size <= 1 then
    Exit;
  if At + Size > Length(Bytes) then
  begin
    Size := 0;
    Exit;
  end;
  Result := Result and ($7F shr Size);
  for I := At + 1 to At + Size - 1 do
    if Bytes[I] and $C0 = $80 then
      Result := Result shl 6 or Bytes[I] and $3F
    else
    begin
      Size := 0;
      Exit;
    end;
  if (Result < Smallest[Size]) or (Result > $10FFFF) or (Result >= $D800) and (Result <= $DFFF) then
    Size := 0;
end;

procedure Put(var Text: UnicodeString; var Size: Integer; Character: Cardinal);
begin
  if Character >= $10000 then
  begin
    Put(Text, Size, $D800 or (Character - $10000) shr 10);
    Character := $DC00 or Character and $3FF;
  end;
  Inc(Size);
  Text[Size] := WideChar(Character);
end;

function Decoded(const Bytes: TBytes; IsJson: Boolean): UnicodeString;
var
  At, Size, CharacterSize: Integer;
  Character: Cardinal;
begin
  SetLength(Result, Length(Bytes));
  At := 0;
  Size := 0;
  while At < Length(Bytes) do
  begin
    Character := CharacterAt(Bytes, At, CharacterSize);
    if (CharacterSize = 0) or not IsJson and (Character >= FirstByte) and (Character <= LastByte) then
    begin
      Character := $EF00 or Bytes[At];
      CharacterSize := 1;
    end;
    Put(Result, Size, Character);
    Inc(At, CharacterSize);
  end;
  SetLength(Result, Size);
end;

function VekTextOf(const Bytes: TBytes): UnicodeString;
begin
  Result := Decoded(Bytes, False);
end;

function Encoded(const Text: UnicodeString; IsJson: Boolean): TBytes;
var
  I, Size: Integer;
  Character: Cardinal;

  procedure Tail(Shift: Integer);
  begin
    Result[Size] := $80 or Character shr Shift and $3F;
    Inc(Size);
  end;

  procedure Lead(Value: Cardinal);
  begin
    Result[Size] := Byte(Value);
    Inc(Size);
  end;

begin
  SetLength(Result, 3 * Length(Text));
  Size := 0;
  I := 1;
  while I <= Length(Text) do
  begin
    Character := Ord(Text[I]);
    if (Character and $FC00 = $D800) and (I < Length(Text)) and (Ord(Text[I + 1]) and $FC00 = $DC00) then
    begin
      Inc(I);
      Character := $10000 + (Character and $3FF) shl 10 or Ord(Text[I]) and $3FF;
    end;
    if not IsJson and (Character >= FirstByte) and (Character <= LastByte) then
      Lead(Character and $FF)
    else if Character < $80 then
      Lead(Character)
    else if Character < $800 then
      Lead($C0 or Character shr 6)
    else if Character < $10000 then
      Lead($E0 or Character shr 12)
    else
      Lead($F0 or Character shr 18);
    if IsJson or (Character < FirstByte) or (Character > LastByte) then
    begin
      if Character >= $10000 then
        Tail(12);
      if Character >= $800 then
        Tail(6);
      if Character >= $80 then
        Tail(0);
    end;
    Inc(I);
  end;
  SetLength(Result, Size);
end;

function VekBytesOf(const Text: UnicodeString): TBytes;
begin
  Result := Encoded(Text, False);
end;

function VekUtf8(const Text: UnicodeString): TBytes;
begin
  Result := Encoded(Text, True);
end;

function VekNative(const Text: UnicodeString): string;
begin
{$ifdef FPC}
  Result := UTF8Encode(Text);
{$else}
  Result := Text;
{$endif}
end;

destructor TVekValue.Destroy;
var
  I: Integer;
begin
  for I := 0 to Count - 1 do
    Items[I].Free;
  inherited;
end;

procedure TVekValue.Add(const Name: UnicodeString; Item: TVekValue);
begin
  if Count = Length(Items) then
  begin
    SetLength(Items, 2 * Count + 8);
    if Kind = vkObject then
      SetLength(Names, Length(Items));
  end;
  Items[Count] := Item;
  if Kind = vkObject then
    Names[Count] := Name;
  Inc(Count);
end;

function TVekValue.Find(const Name: UnicodeString): TVekValue;
var
  I, At: Integer;
begin
  Result := nil;
  if Kind = vkObject then
    for I := 0 to Count - 1 do
    begin
      At := (FNext + I) mod Count;
      if Names[At] = Name then
      begin
        FNext := At + 1;
        Exit(Items[At]);
      end;
    end;
end;

function TVekValue.TextOf(const Name: UnicodeString): UnicodeString;
var
  Found: TVekValue;
begin
  Found := Find(Name);
  if Found = nil then
    Result := ''
  else
    Result := Found.Text;
end;

function TVekValue.WholeOf(const Name: UnicodeString; Absent: Int64): Int64;
begin
  Result := StrToInt64Def(VekNative(TextOf(Name)), Absent);
end;

type
  TReader = record
    Text: UnicodeString;
    At: Integer;
    function Value: TVekValue;
    function Word: UnicodeString;
    procedure Escape(var Found: UnicodeString);
    procedure Fill(Whole: TVekValue);
  end;

procedure TReader.Escape(var Found: UnicodeString);
begin
  Inc(At);
  case Text[At] of
    'b': Found := Found + #8;
    't': Found := Found + #9;
    'n': Found := Found + #10;
    'f': Found := Found + #12;
    'r': Found := Found + #13;
    'u':
      begin
        Found := Found + WideChar(StrToInt(VekNative('$' + Copy(Text, At + 1, 4))));
        Inc(At, 4);
      end;
  else
    Found := Found + Text[At];
  end;
  Inc(At);
end;

function TReader.Word: UnicodeString;
var
  Start: Integer;
begin
  Result := '';
  Inc(At);
  repeat
    Start := At;
    while (Text[At] <> '"') and (Text[At] <> '\') do
      Inc(At);
    Result := Result + Copy(Text, Start, At - Start);
    if Text[At] = '\' then
      Escape(Result)
    else
      Break;
  until False;
  Inc(At);
end;

// The members of an object, or the elements of a list.
procedure TReader.Fill(Whole: TVekValue);
var
  Name: UnicodeString;
begin
  Inc(At);
  Name := '';
  while (Text[At] <> '}') and (Text[At] <> ']') do
  begin
    if Text[At] = ',' then
      Inc(At);
    if Whole.Kind = vkObject then
    begin
      Name := Word;
      Inc(At); // the colon
    end;
    Whole.Add(Name, Value);
  end;
  Inc(At);
end;

function TReader.Value: TVekValue;
var
  Start: Integer;
begin
  Result := TVekValue.Create;
  Start := At;
  case Text[At] of
    '{': Result.Kind := vkObject;
    '[': Result.Kind := vkList;
    '"': Result.Kind := vkText;
    't': Result.Kind := vkTrue;
    'f': Result.Kind := vkFalse;
    'n': Result.Kind := vkNothing;
  else
    Result.Kind := vkNumber;
  end;
  case Result.Kind of
    vkObject, vkList: Fill(Result);
    vkText: Result.Text := Word;
  else
    while Pos(Text[At], UnicodeString(',]}'#10)) = 0 do
      Inc(At);
    if Result.Kind = vkNumber then
      Result.Text := Copy(Text, Start, At - Start);
  end;
end;

function VekReadJson(const Bytes: TBytes): TVekValue;
var
  Reader: TReader;
begin
  Reader.Text := Decoded(Bytes, True);
  Reader.At := 1;
  Result := Reader.Value;
end;

end.
