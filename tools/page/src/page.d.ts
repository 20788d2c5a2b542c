// What build.mjs puts in the place of these.
declare module 'page:worker' {
  const source: string;
  export default source;
}
declare module 'page:example' {
  const text: string;
  export default text;
}
declare module 'page:zstd' {
  const packedDecoder: string;
  export default packedDecoder;
}
