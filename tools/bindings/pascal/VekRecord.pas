// What the classes of messages have in common: reading, writing, comparing.
unit VekRecord;

{$ifdef FPC}{$mode delphi}{$warn 5093 off}{$endif}

interface

uses
  SysUtils, VekJson;

type
  /// <summary>What is wrong with a message, what a host makes of it, and what puts it right.</summary>
  TVekProblem = record
    /// <summary>error or warning</summary>
    Severity: UnicodeString;
    /// <summary>Stable, for programs: unknown-key</summary>
    Code: UnicodeString;
    /// <summary>Of the key; empty for the envelope.</summary>
    Path: UnicodeString;
    /// <summary>First byte in the message, and behind the last one.</summary>
    Start, Stop: Integer;
    Words: UnicodeString;
    /// <summary>What a host makes of it; may be empty.</summary>
    Consequence: UnicodeString;
    /// <summary>What should stand at that place, when that is known.</summary>
    Remedy: UnicodeString;
    function ToString: string;
  end;
  TVekProblems = TArray<TVekProblem>;

  /// <summary>A text that is no sound message, or values that no message can carry.</summary>
  EVekMessage = class(Exception)
  public
    Path, Remedy: UnicodeString;
    /// <summary>First byte in the message, and behind the last one; -1 for values that can't be written.</summary>
    Start, Stop: Integer;
    Problems: TVekProblems;
    constructor Create(const Words, APath: UnicodeString; const AProblems: TVekProblems); reintroduce;
  end;

  TVekRecord = class;
  TVekRecordClass = class of TVekRecord;
  TVekRecords = TArray<TVekRecord>;

  /// <summary>The JSON of a body. What is no value at all is an EVekMessage with its path.</summary>
  TVekWriter = class
  private
    FBytes: TBytes;
    FSize: Integer;
    FPath: UnicodeString;
    FIsStrict: Boolean;
    procedure PutReal(const Key: UnicodeString; const Value: Double);
    procedure PutWhole(const Key: UnicodeString; const Value: Integer);
    procedure PutShort(const Key: UnicodeString; const Value: SmallInt);
    procedure PutText(const Key, Value: UnicodeString);
    procedure PutGroup(const Key: UnicodeString; const Value: TVekRecord);
    function Wrong(const Key, Value, Expected: UnicodeString): EVekMessage;
  public
    constructor Create(IsStrict: Boolean);
    procedure Put(const Text: UnicodeString);
    procedure Name(const Key: UnicodeString);
    function Done: TBytes;
    procedure Real(const Key: UnicodeString; Value: Double);
    procedure Whole(const Key: UnicodeString; Value: Integer);
    procedure Flag(const Key: UnicodeString; Value: Boolean);
    procedure Text(const Key, Value: UnicodeString);
    procedure Word(const Key: UnicodeString; Value: Integer; const Words: array of UnicodeString);
    procedure Group(const Key: UnicodeString; Value: TVekRecord);
    procedure Reals(const Key: UnicodeString; const Values: TArray<Double>);
    procedure Wholes(const Key: UnicodeString; const Values: TArray<Integer>);
    procedure Shorts(const Key: UnicodeString; const Values: TArray<SmallInt>);
    procedure Texts(const Key: UnicodeString; const Values: TArray<UnicodeString>);
    procedure Groups(const Key: UnicodeString; const Values: TVekRecords);
  end;

  /// <summary>A group of values: a message's body, or a record in it. It owns the records in it.</summary>
  TVekRecord = class
  public
    constructor Create; virtual;
    /// <summary>JSON; of values that can't be written too, unless it is strict.</summary>
    function Written(IsStrict: Boolean): TBytes;
    /// <summary>Takes the values of a body; what is absent is 0 or empty, as a host reads it.</summary>
    procedure ReadFrom(From: TVekValue); virtual; abstract;
    procedure WriteTo(Writer: TVekWriter); virtual; abstract;
    /// <summary>Whether both are of one class and have equal values.</summary>
    function Equals(Other: TObject): Boolean; override;
    /// <summary>Its values.</summary>
    function ToString: string; override;
  end;

procedure VekFree(const Records: TVekRecords);
function VekFilled(Kind: TVekRecordClass; Count: Integer): TVekRecords;
function VekReadGroups(From: TVekValue; const Key: UnicodeString; Kind: TVekRecordClass): TVekRecords;
function VekProblemsOf(Found: TVekValue): TVekProblems;

implementation

uses
  Math, VekFields, VekNumbers;

type
  // A list, by how an item of it is written.
  TVekLists<T> = class
  public
    type
      TPutItem = procedure(const Key: UnicodeString; const Value: T) of object;
    class procedure Write(Writer: TVekWriter; const Key: UnicodeString; const Values: TArray<T>; PutItem: TPutItem);
      static;
  end;

procedure VekFree(const Records: TVekRecords);
var
  One: TVekRecord;
begin
  for One in Records do
    One.Free;
end;

function VekFilled(Kind: TVekRecordClass; Count: Integer): TVekRecords;
var
  I: Integer;
begin
  SetLength(Result, Count);
  for I := 0 to Count - 1 do
    Result[I] := Kind.Create;
end;

function VekProblemsOf(Found: TVekValue): TVekProblems;
var
  I: Integer;
  All, One: TVekValue;
begin
  Result := nil;
  All := Found.Find('problems');
  if All = nil then
    Exit;
  SetLength(Result, All.Count);
  for I := 0 to All.Count - 1 do
  begin
    One := All.Items[I];
    Result[I].Severity := One.TextOf('severity');
    Result[I].Code := One.TextOf('code');
    Result[I].Path := One.TextOf('path');
    Result[I].Start := One.WholeOf('start');
    Result[I].Stop := One.WholeOf('end');
    Result[I].Words := One.TextOf('message');
    Result[I].Consequence := One.TextOf('consequence');
    Result[I].Remedy := One.TextOf('suggestion');
  end;
end;

function TVekProblem.ToString: string;
var
  All: UnicodeString;
begin
  All := Words;
  if Pos(Path, Words) = 0 then
    if Path <> '' then
      All := Path + ': ' + Words;
  if Consequence <> '' then
    All := All + '; ' + Consequence;
  if Remedy <> '' then
    All := All + '; did you mean ' + Remedy + '?';
  Result := VekNative(All);
end;

constructor EVekMessage.Create(const Words, APath: UnicodeString; const AProblems: TVekProblems);
begin
  inherited Create(VekNative(Words));
  Path := APath;
  Problems := AProblems;
  Start := -1;
  Stop := -1;
  if Length(Problems) = 0 then
    Exit;
  Path := Problems[0].Path;
  Remedy := Problems[0].Remedy;
  Start := Problems[0].Start;
  Stop := Problems[0].Stop;
end;

function VekReadGroups(From: TVekValue; const Key: UnicodeString; Kind: TVekRecordClass): TVekRecords;
var
  I: Integer;
  List: TArray<TVekValue>;
begin
  List := VekReadList(From, Key);
  Result := VekFilled(Kind, Length(List));
  for I := 0 to High(List) do
    Result[I].ReadFrom(List[I]);
end;

constructor TVekWriter.Create(IsStrict: Boolean);
begin
  FIsStrict := IsStrict;
  SetLength(FBytes, 1024);
end;

procedure TVekWriter.Put(const Text: UnicodeString);
var
  Bytes: TBytes;
begin
  Bytes := VekUtf8(Text);
  if FSize + Length(Bytes) > Length(FBytes) then
    SetLength(FBytes, 2 * (FSize + Length(Bytes)));
  if Length(Bytes) > 0 then
    Move(Bytes[0], FBytes[FSize], Length(Bytes));
  Inc(FSize, Length(Bytes));
end;

procedure TVekWriter.Name(const Key: UnicodeString);
begin
  if (FSize > 0) and (FBytes[FSize - 1] <> Ord('{')) then
    Put(',');
  Put('"' + Key + '":');
end;

function TVekWriter.Done: TBytes;
begin
  Result := Copy(FBytes, 0, FSize);
end;

function TVekWriter.Wrong(const Key, Value, Expected: UnicodeString): EVekMessage;
begin
  Result := EVekMessage.Create(FPath + Key + ': ' + Value + ' is no ' + Expected, FPath + Key, nil);
end;

class procedure TVekLists<T>.Write(Writer: TVekWriter; const Key: UnicodeString; const Values: TArray<T>;
  PutItem: TPutItem);
var
  I: Integer;
begin
  Writer.Name(Key);
  Writer.Put('[');
  for I := 0 to High(Values) do
  begin
    if I > 0 then
      Writer.Put(',');
    PutItem(Key + '[' + UnicodeString(IntToStr(I)) + ']', Values[I]);
  end;
  Writer.Put(']');
end;

procedure TVekWriter.PutReal(const Key: UnicodeString; const Value: Double);
begin
  if not (IsNan(Value) or IsInfinite(Value)) then
    Put(VekSixDecimals(Value))
  else if not FIsStrict then
    Put('"' + UnicodeString(FloatToStr(Value)) + '"')
  else
    raise Wrong(Key, UnicodeString(FloatToStr(Value)), 'finite number');
end;

procedure TVekWriter.PutWhole(const Key: UnicodeString; const Value: Integer);
begin
  Put(UnicodeString(IntToStr(Value)));
end;

procedure TVekWriter.PutShort(const Key: UnicodeString; const Value: SmallInt);
begin
  PutWhole(Key, Value);
end;

procedure TVekWriter.PutText(const Key, Value: UnicodeString);
var
  I: Integer;
  Escaped: UnicodeString;
  IsPair: Boolean;
begin
  Escaped := '';
  I := 1;
  while I <= Length(Value) do
  begin
    IsPair := (Ord(Value[I]) and $FC00 = $D800) and (I < Length(Value)) and (Ord(Value[I + 1]) and $FC00 = $DC00);
    if IsPair then
      Escaped := Escaped + Value[I] + Value[I + 1]
    else if (Ord(Value[I]) and $F800 = $D800) and FIsStrict then
      raise Wrong(Key, 'half a character', 'text')
    else if (Value[I] < ' ') or (Value[I] = '"') or (Value[I] = '\') then
      Escaped := Escaped + UnicodeString('\u' + IntToHex(Ord(Value[I]), 4))
    else
      Escaped := Escaped + Value[I];
    Inc(I, 1 + Ord(IsPair));
  end;
  Put('"' + Escaped + '"');
end;

procedure TVekWriter.PutGroup(const Key: UnicodeString; const Value: TVekRecord);
var
  Outside: UnicodeString;
begin
  if Value = nil then
    if FIsStrict then
      raise Wrong(Key, 'nil', 'record')
    else
      Put('null')
  else
  begin
    Outside := FPath;
    FPath := FPath + Key + '.';
    Put('{');
    Value.WriteTo(Self);
    Put('}');
    FPath := Outside;
  end;
end;

procedure TVekWriter.Real(const Key: UnicodeString; Value: Double);
begin
  Name(Key);
  PutReal(Key, Value);
end;

procedure TVekWriter.Whole(const Key: UnicodeString; Value: Integer);
begin
  Name(Key);
  PutWhole(Key, Value);
end;

procedure TVekWriter.Flag(const Key: UnicodeString; Value: Boolean);
begin
  Name(Key);
  if Value then
    Put('true')
  else
    Put('false');
end;

procedure TVekWriter.Text(const Key, Value: UnicodeString);
begin
  Name(Key);
  PutText(Key, Value);
end;

procedure TVekWriter.Word(const Key: UnicodeString; Value: Integer; const Words: array of UnicodeString);
var
  Number: UnicodeString;
begin
  Number := UnicodeString(IntToStr(Value));
  if (Value >= 0) and (Value <= High(Words)) then
    Text(Key, Words[Value])
  else if FIsStrict then
    raise Wrong(Key, Number, 'value of its enumeration')
  else
    Text(Key, Number);
end;

procedure TVekWriter.Group(const Key: UnicodeString; Value: TVekRecord);
begin
  Name(Key);
  PutGroup(Key, Value);
end;

procedure TVekWriter.Reals(const Key: UnicodeString; const Values: TArray<Double>);
begin
  TVekLists<Double>.Write(Self, Key, Values, PutReal);
end;

procedure TVekWriter.Wholes(const Key: UnicodeString; const Values: TArray<Integer>);
begin
  TVekLists<Integer>.Write(Self, Key, Values, PutWhole);
end;

procedure TVekWriter.Shorts(const Key: UnicodeString; const Values: TArray<SmallInt>);
begin
  TVekLists<SmallInt>.Write(Self, Key, Values, PutShort);
end;

procedure TVekWriter.Texts(const Key: UnicodeString; const Values: TArray<UnicodeString>);
begin
  TVekLists<UnicodeString>.Write(Self, Key, Values, PutText);
end;

procedure TVekWriter.Groups(const Key: UnicodeString; const Values: TVekRecords);
begin
  TVekLists<TVekRecord>.Write(Self, Key, Values, PutGroup);
end;

constructor TVekRecord.Create;
begin
  inherited Create;
end;

function TVekRecord.Written(IsStrict: Boolean): TBytes;
var
  Writer: TVekWriter;
begin
  Writer := TVekWriter.Create(IsStrict);
  try
    Writer.Put('{');
    WriteTo(Writer);
    Writer.Put('}');
    Result := Writer.Done;
  finally
    Writer.Free;
  end;
end;

function TVekRecord.Equals(Other: TObject): Boolean;
var
  Mine, Others: TBytes;
begin
  Result := (Other <> nil) and (Other.ClassType = ClassType);
  if not Result then
    Exit;
  Mine := Written(False);
  Others := TVekRecord(Other).Written(False);
  Result := (Length(Mine) = Length(Others)) and CompareMem(@Mine[0], @Others[0], Length(Mine));
end;

function TVekRecord.ToString: string;
begin
  Result := VekNative(VekTextOf(Written(False)));
end;

end.
