// Builds the messages of a job.
program job_builder;

{$ifdef FPC}{$mode delphi}{$endif}

uses
  SysUtils, VekParams, VekMessages;

var
  Job: TExposeJob;
  Separations: TJobSepList;
  Cylinder: TCylinderJob;

begin
  Job := TExposeJob.Create;
  Job.DrumId := 1;
  Job.NumPasses := 4;
  Job.BitmapFilename := 'spring_cyan.tif';
  Job.WSize := 1030.0;
  Job.HSize := 800.0;
  Job.MediaParams := TMediaParams.Create; // with its own defaults; it belongs to the job
  Job.MediaParams.MediaType := TMediaType.Plate;
  Job.MediaParams.CassetteName := 'Upper';
  Job.PunchParams.ActiveSystems := TArray<Integer>.Create(0, 2); // NumSystems counts them
  Job.Sequence := 1;
  WriteLn(Job.ToString);
  Job.Free;

  Separations := TJobSepList.Create;
  Separations.JobName := 'Spring';
  Separations.SepList := TArray<UnicodeString>.Create('Cyan', 'Black');
  Separations.Sequence := 2;
  WriteLn(Separations.ToString);
  Separations.Free;

  Cylinder := TCylinderJob.Create;
  try
    Cylinder.DeviceMediaNameId := UnicodeString(StringOfChar('x', 580));
    WriteLn(Cylinder.ToString);
  except
    on E: EVekMessage do
      WriteLn('refused: ', E.Message);
  end;
  Cylinder.Free;
end.
