/** Code pages: which of them have a character, and what is where in each. */
import { useState } from 'preact/hooks';
import { ChartCard, type Place } from './chart_card';
import { SearchCard } from './search_card';

export function CodesView() {
  const [place, setPlace] = useState<Place>({ encoding: 'windows-1252', prefix: [], last: null });
  return (
    <>
      <SearchCard onShow={setPlace} />
      <ChartCard place={place} onPlace={setPlace} />
    </>
  );
}
