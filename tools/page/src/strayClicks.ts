// Where a click brings another part of the page below the pointer, the second click of a double one hits what people had
// not seen when they began: it is dropped.
export function dropStrayClicks(parts: Element[]) {
  let begun: Element | undefined;
  const drop = (event: MouseEvent) => {
    const part = parts.find((one) => one.contains(event.target as Node));
    if (event.detail <= 1) begun = part;
    else if (part !== begun) {
      event.stopPropagation();
      event.preventDefault();
    }
  };
  document.addEventListener('click', drop, true);
}
