// The Pascal units against what the library says of the same messages: conformance CONFORMANCE LOG
program conformance;

{$ifdef FPC}{$mode delphi}{$endif}

uses
  {$ifdef UNIX}cthreads, {$endif}
  Classes, Math, SysUtils, VekJson, VekMessages, VekNumbers, VekParams, VekRecord;

var
  Failures, Cases: Integer;

procedure Expect(IsTrue: Boolean; const What: UnicodeString);
begin
  if IsTrue then
    Exit;
  Inc(Failures);
  if Failures < 10 then
    WriteLn('FAILED: ', Copy(VekNative(What), 1, 1000));
end;

function ReadAll(const Name: string): TBytes;
begin
  Result := nil;
  with TFileStream.Create(Name, fmOpenRead) do
    try
      SetLength(Result, Size);
      ReadBuffer(Result[0], Size);
    finally
      Free;
    end;
end;

// Whether what the library read is what stands in the object, which may say more.
function IsIn(Expected, Found: TVekValue): Boolean;
var
  I: Integer;
begin
  Result := (Found <> nil) and (Expected.Count = 0) and (Found.Text = Expected.Text) and (Found.Kind = Expected.Kind);
  if (Found <> nil) and (Expected.Kind = vkNumber) and (Found.Kind = vkNumber) then
    Result := VekRealOf(Found.Text) = VekRealOf(Expected.Text);
  if (Found <> nil) and (Expected.Kind = vkText) and (Pos('inf', Expected.Text) + Pos('nan', Expected.Text) > 0) then
    Result := True; // each language has its own word for it
  if (Found <> nil) and (Expected.Kind = vkText) and (Length(Expected.Text) > 300) and (Found.Kind = vkNumber) then
    Result := Found.Text = Expected.Text;
  if (Found <> nil) and (Expected.Kind = vkList) and (Found.Kind = vkText) then
    Exit(True); // the codes of a 16-bit text that is no sound one
  if (Found = nil) or (Expected.Count = 0) then
    Exit;
  Result := (Expected.Kind = vkObject) or (Found.Count = Expected.Count);
  for I := 0 to Expected.Count - 1 do
    if Expected.Kind = vkList then
      Result := Result and IsIn(Expected.Items[I], Found.Items[I])
    else
      Result := Result and (IsIn(Expected.Items[I], Found.Find(Expected.Names[I])) or (Pos('NUM_', Expected.Names[I]) = 1) or
        (Pos('RANGE_TYPE', Expected.Names[I]) > 0));
end;

procedure Refused(const Text: TBytes; Expected: TVekValue; const What: UnicodeString);
begin
  try
    VekParse(Text).Free;
    Expect(False, 'not refused: ' + What);
  except
    on E: EVekMessage do
      Expect((E.Path = Expected.TextOf('path')) and (E.Start = Expected.WholeOf('start')) and
        (E.Stop = Expected.WholeOf('end')) and (E.Remedy = Expected.TextOf('suggestion')), 'refused otherwise: ' + What);
  end;
end;

procedure TryProblems(const Source: TBytes; const Found: TVekProblems; Expected: TVekValue; const What: UnicodeString);
var
  I: Integer;
begin
  Expect(Length(Found) = Expected.Count, 'problems of ' + What);
  for I := 0 to Min(Length(Found), Expected.Count) - 1 do
    Expect((Found[I].Code = Expected.Items[I].TextOf('code')) and (Found[I].Start = Expected.Items[I].WholeOf('start')) and
      (Found[I].Remedy = Expected.Items[I].TextOf('suggestion')), 'a problem of ' + What);
  for I := 0 to Expected.Count - 1 do
    if Expected.Items[I].TextOf('severity') = 'error' then
    begin
      Refused(Source, Expected.Items[I], What);
      Exit;
    end;
end;

procedure TryCase(One: TVekValue; const What: UnicodeString);
var
  Message, Again: TVekMessage;
  Source, Next: TBytes;
  Nothing, Values: TVekValue;
begin
  if One.TextOf('group') = 'default' then
  begin
    Message := VekNew(One.WholeOf('id'));
    Message.Sequence := 1;
    Expect(Message.Text = One.TextOf('again'), 'default ' + What);
    Message.Free;
    Exit;
  end;
  Source := VekBytesOf(One.TextOf('source'));
  Message := VekParse(Source, True);
  Nothing := TVekValue.Create;
  if One.Find('problems') <> nil then
    TryProblems(Source, Message.Problems, One.Find('problems'), What)
  else
    TryProblems(Source, Message.Problems, Nothing, What);
  Values := VekReadJson(Message.Written(False));
  Expect(IsIn(One.Find(Message.RecordName), Values), 'values of ' + What + ' are ' + VekTextOf(Message.Written(False)));
  Expect((Message.MessageId = One.WholeOf('id')) and (Message.Echo = One.WholeOf('echo')) and
    (Message.Sequence = One.WholeOf('seq')), 'numbers of ' + What);
  if One.Find('again').Kind = vkText then
  begin
    Message.Sequence := Integer(Int64(Message.Sequence) + 1);
    Next := Message.ToBytes;
    Expect(Message.Text = One.TextOf('again'), Message.Text + ' is not ' + One.TextOf('again'));
    Again := VekParse(Next, True);
    Expect(Again.Equals(Message) and (Again.Text = Message.Text), 'again ' + What);
    Again.Free;
  end;
  Values.Free;
  Nothing.Free;
  Message.Free;
end;

procedure RefusesText(Message: TVekMessage; const Path: UnicodeString);
begin
  try
    Message.ToBytes;
    Expect(False, Path + ' was not refused');
  except
    on E: EVekMessage do
      Expect((E.Path = Path) and (E.Start = -1), UnicodeString(E.Message) + ' is not of ' + Path);
  end;
  Message.Free;
end;

procedure TryRefusals;
var
  Focus: TFocusValue;
  Media: TMedia;
  Status: TDeviceStatus;
  Cassettes: TCassetteArray;
  Port: TJobPort;
begin
  Focus := TFocusValue.Create;
  Focus.FocusValue := NaN;
  RefusesText(Focus, 'FOCUS_VALUE');
  Focus := TFocusValue.Create;
  Focus.MediaName := 'a'#0'b';
  RefusesText(Focus, 'MEDIA_NAME');
  Focus := TFocusValue.Create;
  Focus.MediaName := WideChar($D800);
  RefusesText(Focus, 'MEDIA_NAME');
  Media := TMedia.Create;
  Byte(Media.Type_) := 99;
  RefusesText(Media, 'TYPE');
  Status := TDeviceStatus.Create;
  Status.Msgs := TArray<UnicodeString>.Create('x', 'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x');
  Expect(Status.NumOfMessages = 11, 'a count follows its list');
  RefusesText(Status, 'MSGS[10]');
  Cassettes := TCassetteArray.Create;
  SetLength(Cassettes.ArrayCassette, 2);
  Cassettes.ArrayCassette[0] := TCassette.Create;
  RefusesText(Cassettes, 'ARRAY_CASSETTE[1]');
  Port := TJobPort.Create;
  Port.JobName := WideChar($D83D) + WideChar($DE00);
  Port.JobId := 1;
  Expect(Port.Text = '@@4194    59 -1 0 {JOB_NAME={-10179,-8704,0,};JOB_ID=1;}!!', '16-bit text');
  Port.Free;
  try
    TMedia.Parse('@@4118    38 -1 0 {DEVICE_STATE=5;}!!').Free;
    Expect(False, 'of another class');
  except
    on E: EInvalidCast do
      Expect(Pos('4118 is a TDeviceState, not a TMedia', E.Message) > 0, UnicodeString(E.Message));
  end;
  try
    VekNew(9999);
    Expect(False, 'no such id');
  except
    on EArgumentOutOfRangeException do;
  end;
end;

procedure TryLog(const Name: string);
var
  Log: TVekLog;
  Found: TVekLogMessage;
  All: TBytes;
  Count, Damaged: Integer;
begin
  All := ReadAll(Name);
  Count := 0;
  Damaged := 0;
  Log := TVekLog.Create(Name);
  for Found in Log do
  begin
    Inc(Count);
    Inc(Damaged, Ord(Length(Found.Problems) > 0));
    Expect(CompareMem(@All[Found.Offset], @Found.Source[0], Length(Found.Source)) and (Found.Time <> '') and
      (Found.Message.MessageId = Found.Id), 'a message of the log');
  end;
  Log.Free;
  Expect((Count > 5) and (Damaged = 1), 'messages of the log');
end;

// Ties, and that no value of any size becomes another one.
procedure TryNumbers;
const
  Values: array [0 .. 5] of Double = (1 / 128, 3 / 128, 5e9 + 1 / 128, 1e22, -0.0000005, 0.9999995);
  Texts: array [0 .. 5] of UnicodeString = ('0.007812', '0.023438', '5000000000.007812', '10000000000000000000000.000000',
    '-0.000000', '1.000000');
var
  I: Integer;
  Value: Double;
begin
  for I := 0 to High(Values) do
    Expect(VekSixDecimals(Values[I]) = Texts[I], VekSixDecimals(Values[I]) + ' is not ' + Texts[I]);
  RandSeed := 1;
  for I := 1 to 3000 do
  begin
    Value := (Random - 0.5) * IntPower(2.0, 30 + Random(990));
    Expect((Abs(Value) < IntPower(2.0, 33)) or (VekRealOf(VekSixDecimals(Value)) = Value), VekSixDecimals(Value));
  end;
end;

type
  TWorker = class(TThread)
    procedure Execute; override;
  end;

procedure TWorker.Execute;
var
  I: Integer;
  Focus: TFocusValue;
begin
  for I := 1 to 300 do
  begin
    Focus := TFocusValue.Parse('@@4112    44 7 41 {FOCUS_VALUE=1.500000;}!!');
    Focus.FocusValue := I;
    ReturnValue := ReturnValue + Ord(Focus.ToString <> Format('@@4112    %d 7 41 {FOCUS_VALUE=%d.000000;}!!', [43 + Length(IntToStr(I)), I]));
    Focus.Free;
  end;
end;

procedure TryThreads;
var
  Workers: array [1 .. 4] of TWorker;
  I: Integer;
begin
  for I := 1 to 4 do
    Workers[I] := TWorker.Create(False);
  for I := 1 to 4 do
  begin
    Expect(Workers[I].WaitFor = 0, 'a thread');
    Workers[I].Free;
  end;
end;

procedure TellSpeed(const Samples: TArray<TBytes>);
const
  Rounds = 50;
var
  I: Integer;
  Started, Parsed: QWord;
  Sample: TBytes;
  Messages: TArray<TVekMessage>;
begin
  Started := GetTickCount64;
  for I := 1 to Rounds do
    for Sample in Samples do
      VekParse(Sample).Free;
  Parsed := GetTickCount64;
  SetLength(Messages, Length(Samples));
  for I := 0 to High(Samples) do
    Messages[I] := VekParse(Samples[I]);
  Started := Parsed - Started;
  Parsed := GetTickCount64;
  for I := 0 to Rounds * Length(Samples) - 1 do
    Messages[I mod Length(Samples)].ToBytes;
  Parsed := GetTickCount64 - Parsed;
  for I := 0 to High(Messages) do
    Messages[I].Free;
  WriteLn(Format('the %d samples: VekParse %d messages a second, ToBytes %d', [Length(Samples),
    Rounds * Length(Samples) * 1000 div Int64(Max(Started, 1)), Rounds * Length(Samples) * 1000 div Int64(Max(Parsed, 1))]));
end;

var
  Lines: TStringList;
  Line: string;
  One: TVekValue;
  Samples: TArray<TBytes>;

begin
  Cases := 0;
  Failures := 0;
  Samples := nil;
  Lines := TStringList.Create;
  Lines.LoadFromFile(ParamStr(1));
  for Line in Lines do
  begin
    One := VekReadJson(BytesOf(Line + #10));
    TryCase(One, UnicodeString(Copy(Line, 1, 300)));
    if One.TextOf('group') = 'sample' then
      Samples := Concat(Samples, TArray<TBytes>.Create(VekBytesOf(One.TextOf('source'))));
    One.Free;
    Inc(Cases);
  end;
  Lines.Free;
  TryRefusals;
  TryNumbers;
  TryLog(ParamStr(2));
  TryThreads;
  TellSpeed(Samples);
  WriteLn(Format('%d cases, %d failures', [Cases, Failures]));
  if (Failures > 0) or (Cases < 2500) then
    Halt(1);
end.
