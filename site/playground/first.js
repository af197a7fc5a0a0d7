// What a visitor sees first: the coins, separated from uneven light and outlined.
export const FIRST = [
  'coins', 'NuvGryAverageFilter,M=40,N=40', 'NuvImg1Substract2To2', 'NuvThreshold,T=18', 'NuvBinImgFilter',
  'NuvGetContours,minArea=200',
].join('/');
