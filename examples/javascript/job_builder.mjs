// Builds the messages of a job.
import { CylinderJob, ExposeJob, JobSepList, MediaParams, MediaType, MessageError, PunchParams } from 'vekparams2ascii';

const job = new ExposeJob({
  drumId: 1,
  numPasses: 4,
  bitmapFilename: 'spring_cyan.tif',
  wSize: 1030,
  hSize: 800,
  mediaParams: new MediaParams({ mediaType: MediaType.Plate, cassetteName: 'Upper' }),
  punchParams: new PunchParams({ activeSystems: [0, 2] }), // numSystems counts them
  sequence: 1,
});
console.log(String(job));
console.log(String(new JobSepList({ jobName: 'Spring', sepList: ['Cyan', 'Black'], sequence: 2 })));
try {
  console.log(String(new CylinderJob({ deviceMediaNameId: 'a name that is much too long '.repeat(20) })));
} catch (error) {
  if (!(error instanceof MessageError)) throw error;
  console.log(`refused: ${error.message}`);
}
