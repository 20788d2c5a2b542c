/** What a job fails with that was told to stop. */
export class Cancelled extends Error {}
