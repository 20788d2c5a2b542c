// Messages of laser exposure devices: read, written, checked, and found in logs. Their classes are in VekMessages.
unit VekParams;

{$ifdef FPC}{$mode delphi}{$warn 5093 off}{$endif}

interface

uses
  Classes, SysUtils, VekJson, VekRecord;

type
  TVekProblem = VekRecord.TVekProblem;
  TVekProblems = VekRecord.TVekProblems;
  EVekMessage = VekRecord.EVekMessage;

  /// <summary>A message. ToString is its text; equal messages have equal values, whatever their header numbers.</summary>
  TVekMessage = class(TVekRecord)
  public
    /// <summary>Of the message that this one answers, or -1.</summary>
    Echo: Integer;
    Sequence: Integer;
    /// <summary>What was wrong with the text that it was read from.</summary>
    Problems: TVekProblems;
    constructor Create; override;
    class function MessageId: Integer; virtual; abstract;
    class function RecordName: UnicodeString; virtual; abstract;
    /// <summary>Its text in bytes. An EVekMessage for what no message carries.</summary>
    function ToBytes: TBytes;
    /// <summary>Its text; bytes that are no UTF-8 are the characters U+EF80 to U+EFFF.</summary>
    function Text: UnicodeString;
    function ToString: string; override;
  end;
  TVekMessageClass = class of TVekMessage;

  /// <summary>A message in a log, where it stood and what is wrong with it.</summary>
  TVekLogMessage = class
  private
    FFound: TVekValue;
    FMessage: TVekMessage;
    FProblems: TVekProblems;
    function GetId: Integer;
    function GetPlace(Index: Integer): Int64;
    function GetSource: TBytes;
    function GetWords(Index: Integer): UnicodeString;
    function GetMessage: TVekMessage;
  public
    constructor Create(Found: TVekValue);
    destructor Destroy; override;
    /// <summary>The message as it stands.</summary>
    property Source: TBytes read GetSource;
    /// <summary>From 1.</summary>
    property Line: Int64 index 0 read GetPlace;
    /// <summary>Of its first byte.</summary>
    property Offset: Int64 index 1 read GetPlace;
    /// <summary>What stands in front of it on its line.</summary>
    property Before: UnicodeString index 0 read GetWords;
    /// <summary>On its line: 2026-03-01T12:00:00.250, or of a day alone; may be empty.</summary>
    property Time: UnicodeString index 1 read GetWords;
    /// <summary>0 when it can't be read.</summary>
    property Id: Integer read GetId;
    property Problems: TVekProblems read FProblems;
    /// <summary>Its values as a host reads them, whatever the problems. It belongs to this object.</summary>
    property Message: TVekMessage read GetMessage;
  end;

  TVekLog = class;

  /// <summary>No object, for a loop would free that.</summary>
  TVekLogEnumerator = record
  private
    FLog: TVekLog;
    function GetCurrent: TVekLogMessage;
  public
    function MoveNext: Boolean;
    property Current: TVekLogMessage read GetCurrent;
  end;

  /// <summary>The messages of a log, each as soon as it is whole, the damaged ones too: for Found in Log do. Each belongs to
  /// the log and is there until the next one.</summary>
  TVekLog = class
  private
    FStream: TStream;
    FIsOwned, FIsOver: Boolean;
    FLog: Pointer;
    FFound: TBytes;
    FAt: Integer;
    FCurrent: TVekLogMessage;
    procedure Take;
  public
    /// <summary>Of a stream, which stays the caller's.</summary>
    constructor Create(Stream: TStream); overload;
    /// <summary>Of a file.</summary>
    constructor Create(const FileName: string); overload;
    destructor Destroy; override;
    function MoveNext: Boolean;
    function GetEnumerator: TVekLogEnumerator;
    property Current: TVekLogMessage read FCurrent;
  end;

/// <summary>The message that a text is; the caller frees it. An EVekMessage when something is wrong with it; with Damaged, the
/// values are those that a host reads, and what is wrong is in the message's problems.</summary>
function VekParse(const Text: UnicodeString; Damaged: Boolean = False): TVekMessage; overload;
function VekParse(const Text: TBytes; Damaged: Boolean = False): TVekMessage; overload;
/// <summary>The same of one class; an EInvalidCast when it is of another.</summary>
function VekParseAs(Kind: TVekMessageClass; const Text: UnicodeString; Damaged: Boolean = False): TVekMessage;
/// <summary>What is wrong with a text, in order of the places.</summary>
function VekCheck(const Text: UnicodeString): TVekProblems; overload;
function VekCheck(const Text: TBytes): TVekProblems; overload;
/// <summary>A new message with its defaults, which the caller frees.</summary>
function VekNew(Id: Integer): TVekMessage;

procedure VekRegister(const Kinds: array of TVekMessageClass);

implementation

uses
  VekLibrary;

var
  MessageKinds: TArray<TVekMessageClass>;

procedure VekRegister(const Kinds: array of TVekMessageClass);
var
  I: Integer;
begin
  SetLength(MessageKinds, Length(Kinds));
  for I := 0 to High(Kinds) do
    MessageKinds[I] := Kinds[I];
end;

function KindOf(Id: Int64): TVekMessageClass;
begin
  for Result in MessageKinds do
    if Result.MessageId = Id then
      Exit;
  Result := nil;
end;

function Made(Found: TVekValue; const Problems: TVekProblems): TVekMessage;
var
  Kind: TVekMessageClass;
begin
  Kind := KindOf(Found.WholeOf('id'));
  if Kind = nil then
    raise EVekMessage.Create('there is no class for messages of id ' + Found.TextOf('id') +
      ' (their unit is VekMessages)', '', Problems);
  Result := Kind.Create;
  Result.ReadFrom(Found.Find(Kind.RecordName));
  Result.Echo := Found.WholeOf('echo');
  Result.Sequence := Found.WholeOf('seq');
  Result.Problems := Problems;
end;

function VekParse(const Text: UnicodeString; Damaged: Boolean): TVekMessage;
begin
  Result := VekParse(VekBytesOf(Text), Damaged);
end;

procedure Refuse(const Problems: TVekProblems);
var
  Errors: TVekProblems;
  One: TVekProblem;
  Words: UnicodeString;
begin
  Errors := nil;
  for One in Problems do
    if One.Severity = 'error' then
      Errors := Concat(Errors, TVekProblems.Create(One));
  if Length(Errors) = 0 then
    Exit;
  Words := UnicodeString(Errors[0].ToString);
  if Length(Errors) > 1 then
    Words := Words + UnicodeString(Format(' (and %d more)', [Length(Errors) - 1]));
  raise EVekMessage.Create(Words, '', Errors);
end;

function VekParse(const Text: TBytes; Damaged: Boolean): TVekMessage;
var
  Found: TVekValue;
  Problems: TVekProblems;
begin
  Found := VekReadJson(VekLibraryRead(Text));
  try
    Problems := VekProblemsOf(Found);
    if not Damaged then
      Refuse(Problems);
    Result := Made(Found, Problems);
  finally
    Found.Free;
  end;
end;

function VekParseAs(Kind: TVekMessageClass; const Text: UnicodeString; Damaged: Boolean): TVekMessage;
var
  Words: string;
begin
  Result := VekParse(Text, Damaged);
  if Result is Kind then
    Exit;
  Words := Format('the message of id %d is a %s, not a %s', [Result.MessageId, Result.ClassName, Kind.ClassName]);
  Result.Free;
  raise EInvalidCast.Create(Words);
end;

function VekCheck(const Text: UnicodeString): TVekProblems;
begin
  Result := VekCheck(VekBytesOf(Text));
end;

function VekCheck(const Text: TBytes): TVekProblems;
var
  Found: TVekValue;
begin
  Found := VekReadJson(VekLibraryRead(Text));
  try
    Result := VekProblemsOf(Found);
  finally
    Found.Free;
  end;
end;

function VekNew(Id: Integer): TVekMessage;
var
  Kind: TVekMessageClass;
begin
  Kind := KindOf(Id);
  if Kind = nil then
    raise EArgumentOutOfRangeException.CreateFmt('there is no class for messages of id %d (their unit is VekMessages)', [Id]);
  Result := Kind.Create;
end;

constructor TVekMessage.Create;
begin
  inherited;
  Echo := -1;
end;

function TVekMessage.ToBytes: TBytes;
var
  Writer: TVekWriter;
begin
  Writer := TVekWriter.Create(True);
  try
    Writer.Put('{');
    Writer.Whole('id', MessageId);
    Writer.Whole('echo', Echo);
    Writer.Whole('seq', Sequence);
    Writer.Name(RecordName);
    Writer.Put('{');
    WriteTo(Writer);
    Writer.Put('}}');
    Result := Writer.Done;
  finally
    Writer.Free;
  end;
  try
    Result := VekLibraryWrite(Result);
  except
    on E: EVekRefused do
      raise EVekMessage.Create(UnicodeString(E.Message), UnicodeString(Copy(E.Message, 1, Pos(': ', E.Message) - 1)), nil);
  end;
end;

function TVekMessage.Text: UnicodeString;
begin
  Result := VekTextOf(ToBytes);
end;

function TVekMessage.ToString: string;
begin
  Result := VekNative(Text);
end;

// Logs.

constructor TVekLogMessage.Create(Found: TVekValue);
begin
  FFound := Found;
  FProblems := VekProblemsOf(Found);
end;

destructor TVekLogMessage.Destroy;
begin
  FMessage.Free;
  FFound.Free;
  inherited;
end;

function TVekLogMessage.GetId: Integer;
begin
  Result := FFound.WholeOf('id');
end;

function TVekLogMessage.GetPlace(Index: Integer): Int64;
const
  Names: array [0 .. 1] of UnicodeString = ('line', 'offset');
begin
  Result := FFound.WholeOf(Names[Index]);
end;

function TVekLogMessage.GetSource: TBytes;
begin
  Result := VekBytesOf(FFound.TextOf('source'));
end;

function TVekLogMessage.GetWords(Index: Integer): UnicodeString;
const
  Names: array [0 .. 1] of UnicodeString = ('before', 'time');
begin
  Result := FFound.TextOf(Names[Index]);
end;

function TVekLogMessage.GetMessage: TVekMessage;
begin
  if FMessage = nil then
    FMessage := Made(FFound, FProblems);
  Result := FMessage;
end;

constructor TVekLog.Create(Stream: TStream);
begin
  if Stream = nil then
    raise EArgumentNilException.Create('a log is a stream or a file, not nil');
  FStream := Stream;
  FLog := VekLibraryOpenLog;
end;

constructor TVekLog.Create(const FileName: string);
begin
  FIsOwned := True;
  Create(TFileStream.Create(FileName, fmOpenRead or fmShareDenyNone));
end;

destructor TVekLog.Destroy;
begin
  FCurrent.Free;
  if FLog <> nil then
    VekLibraryCloseLog(FLog);
  if FIsOwned then
    FStream.Free;
  inherited;
end;

// What the next block brings.
procedure TVekLog.Take;
var
  Block: TBytes;
begin
  SetLength(Block, 1 shl 16);
  SetLength(Block, FStream.Read(Block[0], Length(Block)));
  FIsOver := Length(Block) = 0;
  FFound := VekLibraryTakeLog(FLog, Block);
  FAt := 0;
end;

function TVekLog.MoveNext: Boolean;
var
  Start: Integer;
begin
  FreeAndNil(FCurrent);
  while (FAt >= Length(FFound)) and not FIsOver do
    Take;
  Result := FAt < Length(FFound);
  if not Result then
    Exit;
  Start := FAt;
  while FFound[FAt] <> 10 do
    Inc(FAt);
  Inc(FAt);
  FCurrent := TVekLogMessage.Create(VekReadJson(Copy(FFound, Start, FAt - Start)));
end;

function TVekLog.GetEnumerator: TVekLogEnumerator;
begin
  Result.FLog := Self;
end;

function TVekLogEnumerator.MoveNext: Boolean;
begin
  Result := FLog.MoveNext;
end;

function TVekLogEnumerator.GetCurrent: TVekLogMessage;
begin
  Result := FLog.FCurrent;
end;

end.
