"""Builds the messages of a job."""

import vek

job = vek.ExposeJob(
    drum_id=1,
    num_passes=4,
    bitmap_filename="spring_cyan.tif",
    w_size=1030.0,
    h_size=800.0,
    media_params=vek.MediaParams(media_type=vek.MediaType.PLATE, cassette_name="Upper"),
    punch_params=vek.PunchParams(active_systems=[0, 2]),  # NUM_SYSTEMS counts them
    sequence=1,
)
print(job)
print(vek.JobSepList(job_name="Spring", sep_list=["Cyan", "Black"], sequence=2))
try:
    print(vek.CylinderJob(device_media_name_id="a name that is much too long " * 20))
except vek.MessageError as error:
    print("refused:", error)
