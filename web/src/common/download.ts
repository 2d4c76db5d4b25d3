/** Gives the user a file. */
export function download(blob: Blob, name: string): void {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(blob);
  link.download = name;
  link.click();
  // The browser has taken hold of it by then.
  setTimeout(() => URL.revokeObjectURL(link.href), 60_000);
}
